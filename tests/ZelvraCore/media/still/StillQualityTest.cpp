// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillQuality.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelvra::media {
namespace {

/// A picture whose quality falls by `loss` dB a step from `best` at quantiser 0, and whose size halves
/// every 6.
std::function<StillTrial(int)> pictureOf(double best, double loss, std::vector<int>& tried) {
    return [=, &tried](int quantiser) {
        tried.push_back(quantiser);
        return StillTrial{best - loss * quantiser, 0.1, std::uint64_t{1'000'000} >> (quantiser / 6)};
    };
}

TEST(ChooseQuantiser, TakesTheCoarsestThatIsGoodEnoughInFewTrials) {
    for (const auto& [best, loss, expected] : {std::tuple{60., .7, 25},
                                               {52., .5, 20},
                                               {70., .9, 31},
                                               {90., .6, 51},
                                               {42.1, .7, 0},
                                               {30., .7, 0}}) {
        std::vector<int> tried;
        EXPECT_EQ(chooseQuantiser({}, pictureOf(best, loss, tried)), expected);
        EXPECT_LE(tried.size(), 6u);
    }
}

TEST(ChooseQuantiser, StaysWithinItsBounds) {
    std::vector<int> tried;
    StillGoal goal;
    goal.leastQuantiser = 4;
    goal.greatestQuantiser = 63;
    EXPECT_EQ(chooseQuantiser(goal, pictureOf(40, .7, tried)), 4);
    EXPECT_EQ(chooseQuantiser(goal, pictureOf(99, .7, tried)), 63);
    EXPECT_GE(*std::ranges::min_element(tried), 4);
    EXPECT_LE(*std::ranges::max_element(tried), 63);
}

TEST(ChooseQuantiser, GivesUpQualityForALimitOfBytesOnly) {
    std::vector<int> tried;
    StillGoal goal;
    goal.mostBytes = 20'000;
    EXPECT_EQ(chooseQuantiser(goal, pictureOf(60, .7, tried)), 36);
    goal.mostBytes = 10;
    EXPECT_EQ(chooseQuantiser(goal, pictureOf(60, .7, tried)), 51);
    goal.mostBytes = 90'000;
    EXPECT_EQ(chooseQuantiser(goal, pictureOf(60, .7, tried)), 25);
}

TEST(ChooseQuantiser, MindsTheTintToo) {
    const auto tinted = [](int quantiser) { return StillTrial{60, quantiser * 0.02, 1000}; };
    EXPECT_EQ(chooseQuantiser({}, tinted), 24);
}

} // namespace
} // namespace zelvra::media
