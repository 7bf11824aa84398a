// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SeekQueue.h"
#include "ZelvraApp/player/StillQueue.h"

#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace zelvra::test {
namespace {

/// What happens to a seek queue, and what it then wants.
struct SeekEvent {
    std::function<std::optional<CoreSeek>(SeekQueue&)> event;
    std::optional<CoreSeek> begins;
    std::optional<std::size_t> goal;
};

SeekEvent seek(std::size_t frame, std::optional<CoreSeek> begins) {
    return {[=](SeekQueue& queue) { return queue.seek(frame); }, begins, frame};
}

SeekEvent endsAt(std::optional<std::size_t> found, std::optional<CoreSeek> begins, std::size_t goal,
                 bool isPlaying = false) {
    return {[=](SeekQueue& queue) { return queue.ended(found, isPlaying); }, begins, goal};
}

constexpr bool farther = true;

TEST(SeekQueue, CarriesOutOneSeekAtATimeAndTriesTwice) {
    const std::vector<std::vector<SeekEvent>> stories{
        {seek(5, CoreSeek{5}), endsAt(5, {}, 5)},
        {seek(5, CoreSeek{5}), endsAt(4, CoreSeek{5, farther}, 5), endsAt(4, {}, 5)},
        {seek(5, CoreSeek{5}), endsAt({}, CoreSeek{5, farther}, 5), endsAt(5, {}, 5)},
        {seek(5, CoreSeek{5}), endsAt(7, {}, 5, true)}, // it has played on
        {seek(5, CoreSeek{5}), seek(6, {}), seek(7, {}), endsAt(5, CoreSeek{7}, 7), endsAt(7, {}, 7)},
        {seek(5, CoreSeek{5}), seek(6, {}), endsAt(4, CoreSeek{6}, 6)}, // no second try for what nobody wants
        {seek(5, CoreSeek{5}), endsAt(4, CoreSeek{5, farther}, 5), seek(9, {}), endsAt(5, CoreSeek{9}, 9)},
    };
    for (std::size_t story = 0; story < stories.size(); ++story) {
        SeekQueue queue;
        for (const SeekEvent& step : stories[story]) {
            EXPECT_EQ(step.event(queue), step.begins) << story;
            EXPECT_EQ(queue.goal(), step.goal) << story;
            EXPECT_EQ(queue.isSeeking(), step.begins.has_value() || queue.isSeeking());
        }
        EXPECT_EQ(queue.isSeeking(), story == 5 || story == 6) << story;
        queue.reset();
        EXPECT_FALSE(queue.goal());
        EXPECT_FALSE(queue.ended(1, false));
    }
}

TEST(StillQueue, ShowsEveryFrameOfAWalkOnceAndInOrder) {
    StillQueue queue;
    queue.reset(10);
    for (const std::size_t frame : {9, 8, 7}) {
        queue.append(frame);
    }
    EXPECT_FALSE(queue.next([](std::size_t frame) { return frame < 9; })); // the first one is not there yet
    const auto all = [](std::size_t) { return true; };
    for (const std::size_t frame : {9, 8, 7}) {
        EXPECT_EQ(queue.wanted(), frame);
        EXPECT_EQ(queue.next(all), frame);
        EXPECT_FALSE(queue.next(all)); // one at a time
        queue.arrived();
        EXPECT_EQ(queue.onScreen(), frame);
    }
    EXPECT_TRUE(queue.isIdle());
}

TEST(StillQueue, JumpsPastEverythingThatWaits) {
    const auto all = [](std::size_t) { return true; };
    StillQueue queue;
    queue.append(1);
    queue.append(2);
    EXPECT_EQ(queue.next(all), 1U);
    queue.jump(50);
    EXPECT_EQ(queue.latest(), 1U);
    EXPECT_EQ(queue.wanted(), 50U);
    queue.arrived();
    EXPECT_EQ(queue.next(all), 50U);
    queue.jump(50); // it is on its way
    queue.arrived();
    EXPECT_TRUE(queue.isIdle());
    queue.reset(std::nullopt);
    EXPECT_FALSE(queue.wanted());
}

} // namespace
} // namespace zelvra::test
