// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/reel/ReelPlan.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace zelvra::media {

namespace {

std::size_t distance(std::size_t a, std::size_t b) {
    return a < b ? b - a : a - b;
}

/// How the places for pictures are shared out before and after the playhead.
std::pair<std::size_t, std::size_t> sidesOf(ReelMotion motion, std::size_t capacity) {
    const std::size_t both = capacity - 1;
    switch (motion) {
    case ReelMotion::backward: return {both - both / 6, both / 6};
    case ReelMotion::forward: return {both / 6, both - both / 6};
    case ReelMotion::dragged: return {both / 2, both / 2};
    case ReelMotion::resting: break;
    }
    return {both - both / 3, both / 3};
}

/// More is decoded on a side when no more than this part of it is left.
constexpr std::size_t lowWater(std::size_t side) {
    return side / 2;
}

} // namespace

ReelPlan::ReelPlan(std::vector<std::size_t> groupStarts, std::size_t pictureCount)
    : groupStarts_(std::move(groupStarts)), count_(pictureCount) {
    assert(!groupStarts_.empty() && groupStarts_.front() == 0);
}

void ReelPlan::setCapacity(std::size_t pictures) {
    constexpr std::size_t fewest = 8;
    capacity_ = std::max(pictures, fewest);
}

std::size_t ReelPlan::groupStart(std::size_t index) const {
    return *(std::ranges::upper_bound(groupStarts_, index) - 1);
}

std::size_t ReelPlan::groupLength(std::size_t start) const {
    const auto next = std::ranges::upper_bound(groupStarts_, start);
    return (next == groupStarts_.end() ? count_ : *next) - start;
}

/// A drag shows one picture of so many, so that a whole group can be kept.
std::size_t ReelPlan::dragStride(std::size_t index) const {
    return 1 + groupLength(groupStart(index)) / (capacity_ / 2);
}

std::size_t ReelPlan::dragStop(std::size_t index) const {
    return std::max(groupStart(index), index - index % dragStride(index));
}

ReelPlan::Window ReelPlan::windowOf(const ReelAim& aim) const {
    const auto [before, after] = sidesOf(aim.motion, capacity_);
    const std::size_t back = std::min(aim.index, before * aim.stride);
    return {aim.index - back, std::min(count_ - 1, aim.index + after * aim.stride)};
}

std::optional<ReelRun> ReelPlan::nextRun(const ReelAim& aim, const IsKept& isKept) const {
    if (aim.motion == ReelMotion::dragged) {
        const std::size_t stop = dragStop(aim.index);
        return isKept(stop) ? std::nullopt
                            : std::optional(ReelRun{groupStart(stop), stop, dragStride(aim.index)});
    }
    if (!isKept(aim.index)) {
        const Window window = windowOf(aim);
        const bool turnsBack = aim.motion == ReelMotion::backward;
        return ReelRun{std::max(window.first, groupStart(aim.index)), turnsBack ? aim.index : window.last,
                       aim.stride};
    }
    const auto before = aim.motion == ReelMotion::forward ? std::nullopt : runBefore(aim, isKept);
    const auto after = aim.motion == ReelMotion::backward ? std::nullopt : runAfter(aim, isKept);
    const bool afterIsCloser = before && after && after->first - aim.index < aim.index - before->last;
    return before && !afterIsCloser ? before : after;
}

std::optional<ReelRun> ReelPlan::runBefore(const ReelAim& aim, const IsKept& isKept) const {
    const Window window = windowOf(aim);
    const std::size_t low = lowWater(sidesOf(aim.motion, capacity_).first) * aim.stride;
    std::size_t index = aim.index;
    while (index > window.first && aim.index - index <= low) {
        --index;
        if (index % aim.stride == 0 && !isKept(index)) {
            return ReelRun{startOfRun(index, window), index, aim.stride};
        }
    }
    return std::nullopt;
}

std::optional<ReelRun> ReelPlan::runAfter(const ReelAim& aim, const IsKept& isKept) const {
    const Window window = windowOf(aim);
    const std::size_t low = lowWater(sidesOf(aim.motion, capacity_).second) * aim.stride;
    for (std::size_t index = aim.index + 1; index <= window.last && index - aim.index <= low + 1; ++index) {
        if (index % aim.stride == 0 && !isKept(index)) {
            return ReelRun{index, window.last, aim.stride};
        }
    }
    return std::nullopt;
}

/// The run stays in the group of its last picture, so that it comes soon. Short groups are taken together.
std::size_t ReelPlan::startOfRun(std::size_t last, const Window& window) const {
    constexpr std::size_t enough = 8;
    constexpr std::size_t shortGroup = 32;
    std::size_t first = std::max(window.first, groupStart(last));
    while (first > window.first && last - first < enough &&
           groupLength(groupStart(first - 1)) <= shortGroup) {
        first = std::max(window.first, groupStart(first - 1));
    }
    return first;
}

bool ReelPlan::isUseful(const ReelRun& run, std::optional<std::size_t> position, const ReelAim& aim,
                        const IsKept& isKept) const {
    const auto isAhead = [&](std::size_t index) { return !position || index > *position; };
    const bool isDrag = aim.motion == ReelMotion::dragged;
    const std::size_t wanted = isDrag ? dragStop(aim.index) : aim.index;
    if (!isKept(wanted)) {
        return run.wants(wanted) && isAhead(wanted);
    }
    const Window window = windowOf(aim);
    const std::size_t from = position ? std::max(run.first, *position + 1) : run.first;
    const bool givesBefore = from < aim.index && run.last >= window.first;
    const bool givesAfter = run.last > aim.index && from <= window.last;
    return !isDrag && run.stride == aim.stride &&
           ((givesBefore && aim.motion != ReelMotion::forward) ||
            (givesAfter && aim.motion != ReelMotion::backward));
}

bool ReelPlan::givesUpFirst(std::size_t index, std::size_t other, const ReelAim& aim) const {
    const Window window = windowOf(aim);
    const auto isWanted = [&](std::size_t candidate) {
        const bool onGrid = aim.motion == ReelMotion::dragged || candidate % aim.stride == 0;
        return candidate == aim.index || (window.contains(candidate) && onGrid);
    };
    if (isWanted(index) != isWanted(other)) {
        return isWanted(other);
    }
    return distance(index, aim.index) > distance(other, aim.index);
}

} // namespace zelvra::media
