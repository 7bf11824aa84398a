// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/FrameIndex.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace zelvra {

FrameIndex::FrameIndex(std::vector<std::int64_t> starts, std::int64_t end, std::int32_t timescale)
    : starts_(std::move(starts)), end_(end), timescale_(timescale) {
    assert(timescale_ > 0);
    assert(starts_.empty() || end_ > starts_.back());
    assert(std::ranges::is_sorted(starts_));
}

FrameIndex::Frame FrameIndex::frame(std::size_t index) const {
    const std::int64_t start = starts_.at(index);
    const std::int64_t end = index + 1 < count() ? starts_[index + 1] : end_;
    return {index, {start, timescale_}, {end - start, timescale_}};
}

std::optional<FrameIndex::Frame> FrameIndex::containing(const CMTime& time) const {
    if (empty() || !time.isNumeric()) {
        return std::nullopt;
    }
    const CMTime ticks = time.converted(timescale_, Rounding::down);
    if (!ticks.isNumeric()) {
        return ticks < CMTime::zero() ? first() : last();
    }
    const auto after = std::ranges::upper_bound(starts_, ticks.value);
    const auto shown = after == starts_.begin() ? after : after - 1;
    return frame(static_cast<std::size_t>(shown - starts_.begin()));
}

std::optional<FrameIndex::Frame> FrameIndex::next(const CMTime& time) const {
    const auto current = containing(time);
    if (!current || current->index + 1 == count()) {
        return std::nullopt;
    }
    return frame(current->index + 1);
}

std::optional<FrameIndex::Frame> FrameIndex::previous(const CMTime& time) const {
    const auto current = containing(time);
    if (!current || current->index == 0) {
        return std::nullopt;
    }
    return frame(current->index - 1);
}

CMTime FrameIndex::end() const {
    return {end_, timescale_};
}

std::vector<std::int64_t> FrameIndex::durations() const {
    std::vector<std::int64_t> result;
    result.reserve(count());
    for (std::size_t index = 0; index < count(); ++index) {
        result.push_back((index + 1 < count() ? starts_[index + 1] : end_) - starts_[index]);
    }
    return result;
}

} // namespace zelvra
