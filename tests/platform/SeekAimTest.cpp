#include "ZelvraApp/platform/SeekAim.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

/// The frame that an exact seek of mpv shows, and whether decoding starts early enough for it.
TEST(SeekAim, PicksEveryFrameThroughATolerantSeek) {
    for (const int rate : {24, 60, 120, 240, 480, 1000}) {
        const FrameIndex frames({0, 1, 2, 3, 7, 8, 9}, 10, rate);
        for (std::size_t i = 0; i < frames.count(); ++i) {
            const SeekAim aim = aimAt(frames, i);
            std::size_t shown = 0;
            while (frames.frame(shown).time.seconds() < aim.seconds - 0.005) {
                ++shown;
            }
            EXPECT_EQ(shown, i) << rate;
            EXPECT_NEAR(aim.seconds - aim.demuxerOffset, frames.frame(i).time.seconds(), 1e-9);
        }
    }
    EXPECT_EQ(aimAt(FrameIndex({0, 1}, 2, 30), 1).demuxerOffset, 0);
}

} // namespace
} // namespace zelvra::test
