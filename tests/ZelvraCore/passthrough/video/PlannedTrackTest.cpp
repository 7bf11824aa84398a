// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/PlannedTrack.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace zelvra::passthrough {
namespace {

using Times = std::array<std::int64_t, 2>; ///< decode, presentation
using testing::ElementsAre;

PlannedSample sampleAt(std::int64_t decodeTime, std::int64_t presentationTime, bool shown) {
    PlannedSample sample;
    sample.shown = shown;
    sample.decodeTime = decodeTime;
    sample.presentationTime = presentationTime;
    return sample;
}

std::vector<Times> timesOf(const OutputTrack& track) {
    std::vector<Times> times;
    for (const OutputSample& sample : track.samples) {
        times.push_back({sample.decodeTime, sample.decodeTime + sample.compositionOffset});
    }
    return times;
}

TEST(PlannedTrack, WaitsForSoundThatNeedsLongerToWarmUp) {
    const isobmff::Track source;
    SamplePlan plan;
    plan.samples = {sampleAt(0, 3, false), sampleAt(1, 4, false), sampleAt(5, 5, true), sampleAt(9, 20, true),
                    sampleAt(15, 15, true)};
    plan.editStart = 5;
    plan.editDuration = 20;
    plan.mediaDuration = 25;
    EXPECT_THAT(timesOf(plannedTrack(plan, source, 5)),
                ElementsAre(Times{0, 3}, Times{1, 4}, Times{5, 5}, Times{9, 20}, Times{15, 15}));
    const OutputTrack delayed = plannedTrack(plan, source, 105);
    EXPECT_THAT(timesOf(delayed),
                ElementsAre(Times{0, 3}, Times{1, 4}, Times{105, 105}, Times{109, 120}, Times{115, 115}));
    EXPECT_EQ(delayed.editStart, 105);
    EXPECT_EQ(delayed.editDuration, 20);
    EXPECT_EQ(delayed.mediaDuration, 125);
}

TEST(PlannedTrack, StartsToDecodeAtZeroEvenIfItsFirstPictureIsShown) {
    SamplePlan plan;
    plan.samples = {sampleAt(0, 2, true), sampleAt(2, 4, true)};
    plan.editStart = 2;
    EXPECT_THAT(timesOf(plannedTrack(plan, {}, 12)), ElementsAre(Times{0, 12}, Times{12, 14}));
}

} // namespace
} // namespace zelvra::passthrough
