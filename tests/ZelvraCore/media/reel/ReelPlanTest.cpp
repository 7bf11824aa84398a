// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reel/ReelPlan.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace zelvra::test {
namespace {

using media::ReelAim;
using media::ReelMotion;
using media::ReelPlan;
using media::ReelRun;

/// A plan, and the pictures that it has led to.
class PlannedReel {
public:
    PlannedReel(std::vector<std::size_t> groupStarts, std::size_t count, std::size_t capacity)
        : plan_(std::move(groupStarts), count) {
        plan_.setCapacity(capacity);
    }

    std::optional<ReelRun> next(const ReelAim& aim) const { return plan_.nextRun(aim, isKept_); }

    void decode(const ReelRun& run, const ReelAim& aim) {
        for (std::size_t index = plan_.groupStart(run.first); index <= run.last; ++index) {
            ++decoded_;
            if (run.wants(index)) {
                kept_.insert(index);
            }
            while (kept_.size() > plan_.capacity()) {
                const auto least = std::ranges::min_element(
                    kept_, [&](std::size_t a, std::size_t b) { return plan_.givesUpFirst(a, b, aim); });
                kept_.erase(least);
            }
        }
    }

    /// Decodes until nothing is left to do.
    void settle(const ReelAim& aim) {
        while (const auto run = next(aim)) {
            ASSERT_LT(++runs_, 1000);
            decode(*run, aim);
        }
    }

    const ReelPlan& plan() const { return plan_; }
    bool has(std::size_t index) const { return kept_.contains(index); }
    std::size_t decoded() const { return decoded_; }

private:
    ReelPlan plan_;
    std::set<std::size_t> kept_;
    std::size_t decoded_ = 0;
    int runs_ = 0;
    const ReelPlan::IsKept isKept_ = [this](std::size_t index) { return kept_.contains(index); };
};

TEST(ReelPlan, PreparesBothSidesOfARestingPlayhead) {
    PlannedReel reel({0, 250, 500}, 750, 60);
    reel.settle({260});
    for (std::size_t index = 240; index <= 275; ++index) {
        EXPECT_TRUE(reel.has(index)) << index; // also those of the group before
    }
}

TEST(ReelPlan, StepsBackThroughAGroupDecodeItAFewTimesOnly) {
    PlannedReel reel({0, 250, 500}, 750, 60);
    for (std::size_t index = 749; index > 0; --index) {
        reel.settle({index, ReelMotion::backward});
        ASSERT_TRUE(reel.has(index));
    }
    EXPECT_LT(reel.decoded(), 6 * 750U);
}

TEST(ReelPlan, NextPicturesAreThereLongBeforeAMovingPlayheadIs) {
    PlannedReel reel({0, 250, 500}, 750, 60);
    reel.settle({600, ReelMotion::backward, 2});
    reel.settle({570, ReelMotion::backward, 2});
    for (std::size_t index = 570; index >= 530; index -= 2) {
        EXPECT_TRUE(reel.has(index)) << index;
    }
    reel.settle({100, ReelMotion::forward});
    for (std::size_t index = 100; index <= 125; ++index) {
        EXPECT_TRUE(reel.has(index)) << index;
    }
}

TEST(ReelPlan, ADragIsContentWithAPictureNearby) {
    PlannedReel reel({0, 250, 500}, 750, 60);
    reel.settle({499, ReelMotion::dragged});
    const std::size_t decoded = reel.decoded();
    for (std::size_t index = 499; index >= 250; --index) { // the whole group is there at once
        reel.settle({index, ReelMotion::dragged});
    }
    EXPECT_EQ(reel.decoded(), decoded);
}

TEST(ReelPlan, ARunIsLeftOnlyForWhatItDoesNotGive) {
    const ReelPlan plan({0, 250}, 500);
    const ReelRun run{260, 300, 1};
    const auto none = [](std::size_t) { return false; };
    const auto all = [](std::size_t) { return true; };
    EXPECT_TRUE(plan.isUseful(run, 255, {280}, none));
    EXPECT_TRUE(plan.isUseful(run, std::nullopt, {280}, none));
    EXPECT_FALSE(plan.isUseful(run, 290, {280}, none)); // it has passed
    EXPECT_FALSE(plan.isUseful(run, 255, {400}, none));
    EXPECT_TRUE(plan.isUseful(run, 255, {301, ReelMotion::backward}, all));
    EXPECT_FALSE(plan.isUseful(run, 255, {200, ReelMotion::backward}, all));
}

} // namespace
} // namespace zelvra::test
