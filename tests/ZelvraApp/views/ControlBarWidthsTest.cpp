// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/ControlBarWidths.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

/// A row without queue and trim that takes 800 pixels.
ControlBarWidths row() {
    ControlBarWidths widths;
    widths.opening = 66;
    widths.fileName = 300;
    widths.time = 60;
    widths.markingKey = 28;
    widths.addButton = 142;
    widths.addTime = 70;
    widths.markButton = 122;
    widths.exportButton = 100;
    widths.signButton = 32;
    return widths;
}

int leftOut(ControlBarWidths widths, double available) {
    widths.available = available;
    return widths.leftOut();
}

TEST(ControlBarWidths, AddUpToTheWholeRow) {
    ControlBarWidths widths = row();
    EXPECT_EQ(widths.full(), 2 * 16 + 66 + 140 + 2 * 28 + 142 + 70 + 122 + 100 + 6 * 12);
    widths.queueButton = 30;
    widths.queueText = 40;
    EXPECT_EQ(widths.full() - row().full(), 2 * 31 + 58 + 24 + 12) << "a short place still takes 58";
    widths = row();
    widths.trimBadge = 200;
    EXPECT_EQ(widths.full() - row().full(), 60 + 6 + 200 - 140) << "time and badge are wider than the name";
}

TEST(ControlBarWidths, LeaveOutAsFewTextsAsNeeded) {
    EXPECT_EQ(leftOut(row(), 800), 0);
    EXPECT_EQ(leftOut(row(), 799), 1);
    EXPECT_EQ(leftOut(row(), 730), 1);
    EXPECT_EQ(leftOut(row(), 729), 2) << "then Export";
    EXPECT_EQ(leftOut(row(), 661), 3) << "then Mark Clip";
    EXPECT_EQ(leftOut(row(), 571), 4) << "then the name";
    EXPECT_EQ(leftOut(row(), 491), 5) << "then Add Highlight";
    EXPECT_EQ(leftOut(row(), 382), 5);
    EXPECT_EQ(leftOut(row(), 100), 6);
}

TEST(ControlBarWidths, MoveTogetherOnlyWhenAllTextsAreLeftOut) {
    ControlBarWidths widths = row();
    widths.available = 382;
    EXPECT_FALSE(widths.isTight());
    EXPECT_TRUE(widths.hasTrimRange());
    widths.available = 381;
    EXPECT_TRUE(widths.isTight());
}

} // namespace
} // namespace zelvra
