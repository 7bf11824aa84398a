// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/FrameIndex.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

/// Frames at 100, 120, 160 and 200 ms, the last 50 ms long.
const FrameIndex frames({100, 120, 160, 200}, 250, 1000);

TEST(FrameIndex, FindsTheFrameOnScreen) {
    EXPECT_EQ(frames.containing({120, 1000})->index, 1U);
    EXPECT_EQ(frames.containing({159, 1000})->index, 1U);
    EXPECT_EQ(frames.containing({159999, 1000000})->index, 1U);
    EXPECT_EQ(frames.containing({4, 25})->index, 2U);
    EXPECT_EQ(frames.containing({4, 25})->time, CMTime(160, 1000));
    EXPECT_EQ(frames.containing({4, 25})->duration, CMTime(40, 1000));
    EXPECT_EQ(frames.last().end(), CMTime(250, 1000));
}

TEST(FrameIndex, TakesTheFirstBeforeAndTheLastAfterAllFrames) {
    EXPECT_EQ(frames.containing(CMTime::zero())->index, 0U);
    EXPECT_EQ(frames.containing({-5, 1})->index, 0U);
    EXPECT_EQ(frames.containing({250, 1000})->index, 3U);
    EXPECT_EQ(frames.containing({INT64_MAX, 1})->index, 3U);
}

TEST(FrameIndex, StepsToTheNeighboursAndNoFurther) {
    EXPECT_EQ(frames.next({130, 1000})->time, CMTime(160, 1000));
    EXPECT_EQ(frames.previous({130, 1000})->time, CMTime(100, 1000));
    EXPECT_FALSE(frames.previous({100, 1000}));
    EXPECT_FALSE(frames.next({200, 1000}));
}

TEST(FrameIndex, HasNoFrameForATimeThatIsNoNumber) {
    EXPECT_FALSE(frames.containing(CMTime::invalid()));
    EXPECT_FALSE(frames.containing(CMTime::positiveInfinity()));
    EXPECT_FALSE(FrameIndex().containing(CMTime::zero()));
    EXPECT_FALSE(FrameIndex().next(CMTime::zero()));
}

} // namespace
} // namespace zelvra
