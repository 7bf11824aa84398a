// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/FrameDuration.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zelvra::media {

namespace {

constexpr std::int64_t shareOfTime = 20; // a twentieth
constexpr std::int64_t weightLimit = 10; // a tenth of a second

} // namespace

CMTime typicalFrameDuration(std::span<const std::int64_t> durations, std::int32_t timescale) {
    if (timescale <= 0) {
        return CMTime::invalid();
    }
    std::vector<std::int64_t> sorted;
    sorted.reserve(durations.size());
    std::ranges::copy_if(durations, std::back_inserter(sorted), [](std::int64_t ticks) { return ticks > 0; });
    std::ranges::sort(sorted);

    const std::int64_t most = std::max<std::int64_t>(timescale / weightLimit, 1);
    const auto weight = [most](std::int64_t ticks) { return std::min(ticks, most); };
    std::int64_t total = 0;
    for (const std::int64_t ticks : sorted) {
        total += weight(ticks);
    }
    std::int64_t filled = 0;
    for (const std::int64_t ticks : sorted) {
        filled += weight(ticks);
        if (filled * shareOfTime >= total) {
            return {ticks, timescale};
        }
    }
    return CMTime::invalid();
}

CMTime frameDurationFromRate(float nominalFrameRate) {
    const float rounded = std::round(nominalFrameRate);
    const bool usable = rounded >= 1.0F && rounded < 0x1p31F;
    return {1, usable ? static_cast<std::int32_t>(rounded) : 1};
}

} // namespace zelvra::media
