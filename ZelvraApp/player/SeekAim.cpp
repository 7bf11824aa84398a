// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SeekAim.h"

#include <algorithm>

namespace zelvra {

namespace {

/// The frame's time. If the frame before it is closer than twice the tolerance, the middle between both plus
/// the tolerance.
double timeToSeek(const FrameIndex& frames, std::size_t index) {
    constexpr double tolerance = 0.005;
    const double time = frames.frame(index).time.seconds();
    if (index == 0) {
        return time;
    }
    const double gap = time - frames.frame(index - 1).time.seconds();
    return time + std::max(0.0, tolerance - gap / 2);
}

} // namespace

SeekAim aimAt(const FrameIndex& frames, const std::vector<std::int64_t>& syncs, std::size_t index) {
    const CMTime time = frames.frame(index).time;
    const auto after = std::ranges::upper_bound(syncs, time.value);
    const CMTime start{after == syncs.begin() ? 0 : *(after - 1), time.timescale};
    const double aim = timeToSeek(frames, index);
    return {aim, aim - start.seconds()};
}

} // namespace zelvra
