// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/PictureSchedule.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

using Runs = std::vector<PictureSchedule::Run>;

/// Pictures of variable rate until 1 s, sound until 1.5 s. Ticks are hundredths.
const FrameIndex frames({0, 7, 40, 90}, 100, 100);

PictureSchedule scheduleOf(const CMTimeRange& range, std::span<const Highlight> highlights,
                           const CMTime& frameDuration) {
    SourceInfo info;
    info.duration = CMTime(150, 100);
    info.frameDuration = frameDuration;
    const RenderPlan plan = planRender(highlights, range, true, info);
    return schedulePictures(layoutTimeline(plan, info, frames), frames, frameDuration);
}

Highlight freezeAt(int ticks, const CMTime& duration) {
    return {Uuid::random(), CMTime(ticks, 100), duration, {}};
}

TEST(PictureSchedule, KeepsTheTimesOfPicturesAndRepeatsTheLastOneInATail) {
    const auto range = CMTimeRange::fromStartToEnd(CMTime(10, 100), CMTime(150, 100));
    const std::vector<Highlight> highlights{freezeAt(45, CMTime(4, 20)), freezeAt(120, CMTime(2, 20))};
    const PictureSchedule schedule = scheduleOf(range, highlights, CMTime(1, 20));
    EXPECT_EQ(schedule.runs, (Runs{{0, 1, 1, false},
                                   {30, 0, 4, true},
                                   {50, 2, 1, false},
                                   {100, 3, 1, false},
                                   {130, 1, 2, true},
                                   {140, 3, 1, false}}));
    EXPECT_EQ(schedule.end, 170);
    EXPECT_EQ(schedule.pictureCount(), 10);
}

TEST(PictureSchedule, EndsTheSoundOnATickOfThePictures) {
    const auto range = CMTimeRange::fromStartToEnd(CMTime::zero(), CMTime(424, 1000));
    EXPECT_EQ(scheduleOf(range, {}, CMTime(1, 20)).sound.back().duration, CMTime(42, 100));
}

TEST(PictureSchedule, TakesATimescaleThatHoldsBothRates) {
    const CMTimeRange range{CMTime::zero(), CMTime(1, 1)};
    const CMTime ntsc(1001, 30000);
    const PictureSchedule schedule = scheduleOf(range, std::vector{freezeAt(40, ntsc * 3)}, ntsc);
    EXPECT_EQ(schedule.timescale, 30000);
    EXPECT_EQ(schedule.ticksOfFrame(2), 2002);
    EXPECT_EQ(schedule.runs.at(3), (PictureSchedule::Run{12000 + 3 * 1001, 2, 1, false}));
    const CMTime prime(1, 999'999'937); // no common timescale fits
    EXPECT_EQ(scheduleOf(range, {}, prime).timescale, 100);
}

} // namespace
} // namespace zelvra
