// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SeekAim.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

/// As mpv does: the first frame that is not more than 5 ms before the aim.
TEST(SeekAim, ReachesEveryFrameByATolerantSeek) {
    for (const int rate : {24, 60, 120, 240, 480, 1000}) {
        const FrameIndex frames({0, 1, 2, 3, 7, 8, 9}, 10, rate);
        for (std::size_t i = 0; i < frames.count(); ++i) {
            const SeekAim aim = aimAt(frames, {0, 3, 8}, i);
            std::size_t shown = 0;
            while (frames.frame(shown).time.seconds() < aim.seconds - 0.005) {
                ++shown;
            }
            EXPECT_EQ(shown, i) << rate;
            const double syncFrame = i < 3 ? 0 : i < 5 ? 3 : 8;
            EXPECT_NEAR(aim.seconds - aim.demuxerOffset, syncFrame / rate, 1e-9);
        }
    }
}

} // namespace
} // namespace zelvra::test
