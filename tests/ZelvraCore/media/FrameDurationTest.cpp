// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/FrameDuration.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace zelvra::media {
namespace {

using Durations = std::vector<std::int64_t>;

Durations repeated(std::int64_t ticks, std::size_t count) {
    return Durations(count, ticks);
}

Durations operator+(Durations first, const Durations& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::int64_t typical(const Durations& durations, std::int32_t timescale) {
    return typicalFrameDuration(durations, timescale).value;
}

TEST(TypicalFrameDuration, KeepsTheTicksOfAConstantRate) {
    const CMTime duration = typicalFrameDuration(repeated(1001, 100), 30000);
    EXPECT_EQ(duration.value, 1001);
    EXPECT_EQ(duration.timescale, 30000);
    EXPECT_EQ(typical({1}, 30), 1);
}

TEST(TypicalFrameDuration, TakesTheUsualLengthIfTicksAreCoarse) {
    EXPECT_EQ(typical({33, 33, 34, 33, 33, 34}, 1000), 33);
    EXPECT_EQ(typical(repeated(2, 50) + repeated(3, 50), 600), 2); // 240 frames a second
}

TEST(TypicalFrameDuration, PassesOverStrayAndHiddenSamplesOfOneTick) {
    EXPECT_EQ(typical({3000, 2999, 3001, 1, 2999, 3000, 3000}, 90000), 2999);
    // A hidden run within one frame of each of 5 freezes, as in the program's own exports.
    EXPECT_EQ(typical(repeated(20, 600) + repeated(1, 95), 600), 20);
    // Freezes of sparse stills: 8 at the movie's rate, then two a second.
    EXPECT_EQ(typical(repeated(512, 150) + repeated(512, 8) + repeated(7680, 40), 15360), 512);
}

TEST(TypicalFrameDuration, CountsAStretchOfHigherRateButNoFlicker) {
    EXPECT_EQ(typical(repeated(3000, 100) + repeated(375, 100), 90000), 375);
    EXPECT_EQ(typical(repeated(3000, 100) + repeated(375, 4), 90000), 3000);
}

TEST(TypicalFrameDuration, IsNotOutweighedByOneLongPicture) {
    EXPECT_EQ(typical(repeated(1500, 200) + Durations{54000000}, 90000), 1500);
    EXPECT_EQ(typical({180000, 180000, 180000}, 90000), 180000);
}

TEST(TypicalFrameDuration, IsInvalidWithoutUsableLengths) {
    EXPECT_FALSE(typicalFrameDuration({}, 600).isValid());
    EXPECT_FALSE(typicalFrameDuration(Durations{0, -5}, 600).isValid());
    EXPECT_FALSE(typicalFrameDuration(Durations{20}, 0).isValid());
}

TEST(FrameDurationFromRate, IsOneNthOfASecond) {
    EXPECT_EQ(frameDurationFromRate(25), CMTime(1, 25));
    EXPECT_EQ(frameDurationFromRate(29.97F), CMTime(1, 30));
    EXPECT_EQ(frameDurationFromRate(23.976F), CMTime(1, 24));
    EXPECT_EQ(frameDurationFromRate(2.5F), CMTime(1, 3));
    for (const float useless :
         {0.0F, 0.4F, -30.0F, 3e9F, std::numeric_limits<float>::infinity(), std::nanf("")}) {
        EXPECT_EQ(frameDurationFromRate(useless), CMTime(1, 1));
    }
}

} // namespace
} // namespace zelvra::media
