// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/TimeText.h"

#include "ZelvraCore/records/ZVError.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

TEST(TimeText, ReadsSecondsMinutesHoursAndTicks) {
    EXPECT_EQ(parseTime("12.5"), CMTime(25, 2));
    EXPECT_EQ(parseTime("0"), CMTime::zero());
    EXPECT_EQ(parseTime("01:15.50"), CMTime(151, 2));
    EXPECT_EQ(parseTime("90:00"), CMTime(5400, 1));
    EXPECT_EQ(parseTime("1:02:03.25"), CMTime(372325, 100));
    const CMTime ticks = parseTime("900/600");
    EXPECT_EQ(ticks.value, 900);
    EXPECT_EQ(ticks.timescale, 600);
}

TEST(TimeText, FindsTheFrameWhoseTimeWasPrintedWithSixDecimals) {
    EXPECT_EQ(parseTime("8.533333"), CMTime(256, 30));
    EXPECT_EQ(parseTime("8.541867"), CMTime(256256, 30000));
    EXPECT_EQ(parseTime("0.016683"), CMTime(1001, 60000));
    EXPECT_EQ(timeFromSeconds(256256 / 24000.0), CMTime(256256, 24000));
}

TEST(TimeText, RefusesTextsThatAreNoTimes) {
    for (const char* text : {"",           ".",        "-1",      "+1",   "1e3",  "12.5s",
                             "1:60",       "1:2:3:4",  ":30",     "1:",   "900/", "/600",
                             "900/0",      "900/-600", "9/600/1", "0x10", " 1",   "99999999999999999999",
                             "9999999999", "nan",      "1.2.3"}) {
        EXPECT_THROW(parseTime(text), ZVError) << text;
    }
    EXPECT_THROW(timeFromSeconds(-0.1), ZVError);
    EXPECT_THROW(timeFromSeconds(1e300), ZVError);
}

TEST(TimeText, ShowsTimeLeftOnAClock) {
    EXPECT_EQ(clockText(1.6), "0:02");
    EXPECT_EQ(clockText(75), "1:15");
    EXPECT_EQ(clockText(3723), "1:02:03");
    EXPECT_EQ(clockText(-3), "0:00");
}

} // namespace
} // namespace zelvra
