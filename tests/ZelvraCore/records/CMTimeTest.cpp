// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/CMTimeRange.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace zelvra {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

TEST(CMTime, AddsTimesOfDifferentTimescalesWithoutRounding) {
    const CMTime sum = CMTime::fromSeconds(1.5, 600) + CMTime(1, 30);
    EXPECT_EQ(sum, CMTime(46, 30));
    EXPECT_EQ(sum.timescale, 600);
    EXPECT_EQ(sum.value, 920);
    EXPECT_EQ(sum.flags, CMTime::valid);

    // 90 kHz against 44.1 kHz: three and a half hours of frames do not drift.
    CMTime clock = CMTime::zero();
    for (int i = 0; i < 100'000; ++i) {
        clock += CMTime(3003, 90'000);
        clock -= CMTime(1, 44'100);
    }
    EXPECT_EQ(clock, CMTime(300'300'000, 90'000) - CMTime(100'000, 44'100));
}

TEST(CMTime, RoundsOnlyIfNoCommonTimescaleFitsAndMarksIt) {
    const CMTime a(1, 2'147'483'647); // prime, so no common timescale below 2^31
    const CMTime b(1, 2'147'483'629);
    const CMTime sum = a + b;
    EXPECT_TRUE(sum.flags & CMTime::hasBeenRounded);
    EXPECT_NEAR(sum.seconds(), a.seconds() + b.seconds(), 1e-9);
    EXPECT_TRUE((sum + CMTime(1, 1)).flags & CMTime::hasBeenRounded) << "the mark stays";
}

TEST(CMTime, NeverWrapsAround) {
    const CMTime coarser = CMTime(most, 600) + CMTime(most, 600);
    EXPECT_TRUE(coarser.isNumeric());
    EXPECT_LT(coarser.timescale, 600);
    EXPECT_NEAR(coarser.seconds() / (2.0 * CMTime(most, 600).seconds()), 1.0, 1e-12);
    EXPECT_TRUE((CMTime(most, 1) + CMTime(most, 1)).isPositiveInfinity());
    EXPECT_TRUE((CMTime(-most, 1) - CMTime(most, 1)).isNegativeInfinity());
    EXPECT_TRUE((CMTime(most, 1) * 2).isPositiveInfinity());
    EXPECT_TRUE((-CMTime(std::numeric_limits<std::int64_t>::min(), 1)).isPositiveInfinity());
    EXPECT_TRUE(CMTime(most, 1).converted(90'000).isPositiveInfinity());
    EXPECT_LT(CMTime(most - 1, most % 1000 + 3), CMTime(most, most % 1000 + 3));
}

TEST(CMTime, OrdersAndAddsSpecialValues) {
    const CMTime order[] = {CMTime::negativeInfinity(), CMTime(-5, 1),    CMTime(7, 3), CMTime::indefinite(),
                            CMTime::positiveInfinity(), CMTime::invalid()};
    for (std::size_t i = 0; i < std::size(order); ++i) {
        for (std::size_t k = 0; k < std::size(order); ++k) {
            EXPECT_EQ(order[i] < order[k], i < k);
            EXPECT_EQ(order[i] == order[k], i == k);
            EXPECT_EQ(minimum(order[i], order[k]), order[std::min(i, k)]);
            EXPECT_EQ(maximum(order[i], order[k]), order[std::max(i, k)]);
        }
    }
    EXPECT_FALSE((CMTime::invalid() + CMTime(1, 1)).isValid());
    EXPECT_FALSE((CMTime::positiveInfinity() + CMTime::negativeInfinity()).isValid());
    EXPECT_TRUE((CMTime(1, 1) - CMTime::positiveInfinity()).isNegativeInfinity());
    EXPECT_TRUE((CMTime(1, 1) + CMTime::indefinite()).isIndefinite());
    EXPECT_TRUE((CMTime::positiveInfinity() + CMTime::indefinite()).isPositiveInfinity());
    EXPECT_FALSE(CMTime(1, 0).isValid());
    EXPECT_TRUE(std::isnan(CMTime::indefinite().seconds()));
}

TEST(CMTime, ComesFromSecondsAtTheNearestTick) {
    EXPECT_EQ(CMTime::fromSeconds(1.5, 600).value, 900);
    EXPECT_EQ(CMTime::fromSeconds(-0.0008334, 600).value, -1) << "halves and more go away from zero";
    EXPECT_FALSE(CMTime::fromSeconds(std::nan(""), 600).isValid());
    EXPECT_FALSE(CMTime::fromSeconds(1, 0).isValid());
    EXPECT_TRUE(CMTime::fromSeconds(1e300, 600).isPositiveInfinity());
    EXPECT_TRUE(CMTime::fromSeconds(-std::numeric_limits<double>::infinity(), 600).isNegativeInfinity());
}

TEST(CMTime, ConvertsByEachRounding) {
    const CMTime time(-7, 4); // -1.75 s
    EXPECT_EQ(time.converted(1).value, -2);
    EXPECT_EQ(time.converted(1, Rounding::down).value, -2);
    EXPECT_EQ(time.converted(1, Rounding::up).value, -1);
    EXPECT_EQ(time.converted(1, Rounding::towardZero).value, -1);
    EXPECT_EQ(time.converted(2, Rounding::nearest).value, -4) << "-3.5 ticks";
    EXPECT_EQ(time.converted(8).value, -14);
    EXPECT_FALSE(time.converted(8).flags & CMTime::hasBeenRounded);
    EXPECT_TRUE(time.converted(1).flags & CMTime::hasBeenRounded);
}

TEST(CMTime, AgreesWithExactFractions) {
    std::mt19937_64 random(20);
    auto time = [&] {
        return CMTime(static_cast<std::int64_t>(random() % 2'000'001) - 1'000'000,
                      static_cast<std::int32_t>(1 + random() % 30'000));
    };
    for (int i = 0; i < 10'000; ++i) {
        const CMTime a = time();
        const CMTime b = time();
        const CMTime c = time();
        EXPECT_EQ((a + b) - b, a);
        EXPECT_EQ(a + b, b + a);
        EXPECT_EQ(a < b, a.value * b.timescale < b.value * a.timescale);
        EXPECT_EQ(a * 3, a + a + a);
        if (a < b) {
            EXPECT_LE(a + c, b + c);
        }
    }
}

TEST(CMTimeRange, IsMadeFromStartAndEitherDurationOrEnd) {
    const CMTimeRange range = CMTimeRange::fromStartToEnd(CMTime(1, 30), CMTime(3, 2));
    EXPECT_EQ(range.duration, CMTime(44, 30));
    EXPECT_EQ(range.end(), CMTime(3, 2));
    EXPECT_EQ((CMTimeRange{CMTime(1, 30), CMTime(44, 30)}).end(), range.end());
}

} // namespace
} // namespace zelvra
