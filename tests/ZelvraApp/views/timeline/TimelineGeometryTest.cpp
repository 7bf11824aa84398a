// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/timeline/TimelineGeometry.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

using Kind = TimelineTarget::Kind;

TEST(TimelineWindow, ShowsTheWholeSourceOrTheSurroundingsOfTheTrim) {
    EXPECT_EQ(currentWindow(0, {}), (TimeSpan{0, 1}));
    EXPECT_EQ(currentWindow(0, TimeSpan{1, 2}), (TimeSpan{0, 1}));
    EXPECT_EQ(currentWindow(600, {}), (TimeSpan{0, 600}));
    EXPECT_EQ(currentWindow(600, TimeSpan{100, 120}), (TimeSpan{90, 150}));
    EXPECT_EQ(currentWindow(600, TimeSpan{5, 590}), (TimeSpan{0, 600}));
    EXPECT_EQ(currentWindow(600, TimeSpan{700, 800}), (TimeSpan{0, 600})) << "a trim beyond the source";
}

TEST(TimelineAxis, MapsTimesToPositionsAndBackWithinItsEnds) {
    const TimelineAxis axis({90, 150}, 300);
    EXPECT_DOUBLE_EQ(axis.position(90), 0);
    EXPECT_DOUBLE_EQ(axis.position(120), 150);
    EXPECT_DOUBLE_EQ(axis.position(1000), 300);
    EXPECT_DOUBLE_EQ(axis.time(150), 120);
    EXPECT_DOUBLE_EQ(axis.time(-5), 90);
    EXPECT_DOUBLE_EQ(axis.time(305), 150);
    EXPECT_DOUBLE_EQ(TimelineAxis({90, 150}, 0).time(3), 90) << "a strip that has no width yet";
    EXPECT_DOUBLE_EQ(TimelineAxis({5, 5}, 100).position(5), 0) << "a window of no length";
}

TEST(TimelineAxis, ShowsItsEndsAndKnowsWhetherItIsZoomed) {
    const TimelineAxis axis({90, 150}, 300);
    EXPECT_TRUE(axis.shows(90) && axis.shows(150));
    EXPECT_FALSE(axis.shows(89.999) || axis.shows(150.001));
    EXPECT_TRUE(axis.isZoomed(600));
    EXPECT_FALSE(axis.isZoomed(60));
    EXPECT_FALSE(TimelineAxis({0, 1}, 300).isZoomed(0));
}

TEST(TimelineBars, AreNeverTooNarrowToBeSeen) {
    const TimelineAxis axis({0, 600}, 600);
    EXPECT_EQ(barOf({100, 120}, axis), (TimelineBar{100, 20}));
    EXPECT_EQ(barOf({100, 100.5}, axis), (TimelineBar{99.25, 2}));
    EXPECT_EQ(barOf({700, 800}, axis), (TimelineBar{599, 2})) << "outside the window it is at its end";
}

TEST(TimelineTargets, PreferDotsToHandlesAndWhatIsDrawnLast) {
    const TimeSpan handles{100, 200};
    const auto at = [&](double x, double y = 14) { return targetAt({x, y}, 28, {50, 60, 198}, handles); };
    EXPECT_EQ(at(55), (TimelineTarget{Kind::dot, 1}));
    EXPECT_EQ(at(50), (TimelineTarget{Kind::dot, 0}));
    EXPECT_EQ(at(50, 3), (TimelineTarget{Kind::strip})) << "above the dot";
    EXPECT_EQ(at(200), (TimelineTarget{Kind::dot, 2}));
    EXPECT_EQ(at(94), (TimelineTarget{Kind::startHandle}));
    EXPECT_EQ(at(206, 2), (TimelineTarget{Kind::endHandle}));
    EXPECT_EQ(at(150), (TimelineTarget{Kind::strip})) << "the band takes no clicks";
    EXPECT_EQ(targetAt({100, 14}, 28, {}, {}), (TimelineTarget{Kind::strip})) << "without handles";
}

TEST(TimelineTargets, DistinguishHandlesThatAreClose) {
    const TimeSpan handles{100, 101};
    EXPECT_EQ(targetAt({99, 14}, 28, {}, handles).kind, Kind::startHandle);
    EXPECT_EQ(targetAt({102, 14}, 28, {}, handles).kind, Kind::endHandle);
}

} // namespace
} // namespace zelvra
