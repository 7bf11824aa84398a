// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/FreezeClock.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace zelvra::passthrough {

namespace {

/// FFmpeg drops composition offsets of 2^28 ticks and more.
constexpr std::int64_t longestFreeze = (std::int64_t{1} << 28) - 1;
constexpr std::uint64_t greatestTimescale = std::numeric_limits<std::int32_t>::max();
/// A greater factor is not worth exact frame times.
constexpr std::uint64_t greatestExactFactor = 1000;

/// The least factor with which every frame of a freeze starts at a whole tick.
std::uint64_t exactFactor(const CMTime& frameDuration, std::uint32_t timescale) {
    const auto denominator = static_cast<std::uint64_t>(frameDuration.timescale);
    const auto ticks = static_cast<std::uint64_t>(frameDuration.value) * timescale;
    return std::max<std::uint64_t>(denominator / std::gcd(denominator, ticks), 1);
}

} // namespace

FreezeClock::FreezeClock(const VideoCut& cut, std::uint32_t sourceTimescale, std::uint32_t leastFactor)
    : cut_(cut) {
    std::uint64_t factor = std::max<std::uint64_t>(leastFactor, 1);
    if (!cut.freezes.empty()) {
        const std::uint64_t exact = exactFactor(cut.frameDuration, sourceTimescale);
        const std::uint64_t both = (factor + exact - 1) / exact * exact;
        if (exact <= greatestExactFactor && both * sourceTimescale <= greatestTimescale) {
            factor = both;
        }
    }
    if (factor * sourceTimescale > greatestTimescale) {
        throw CannotPassThrough("its timescale leaves no room for hidden pictures");
    }
    factor_ = static_cast<std::uint32_t>(factor);
    timescale_ = factor_ * sourceTimescale;
    starts_.reserve(cut.freezes.size() + 1);
    starts_.push_back(0);
    for (std::size_t i = 0; i < cut.freezes.size(); ++i) {
        if (length(i) > longestFreeze) {
            throw CannotPassThrough("a freeze is longer than players can follow");
        }
        starts_.push_back(starts_.back() + length(i));
    }
}

std::int64_t FreezeClock::atFrame(std::int64_t frame) const {
    const CMTime start(cut_.frameDuration.value * frame, cut_.frameDuration.timescale);
    return start.converted(static_cast<std::int32_t>(timescale_)).value;
}

std::int64_t FreezeClock::length(std::size_t freeze) const {
    const VideoCut::Freeze& asked = cut_.freezes[freeze];
    return asked.heldTicks ? *asked.heldTicks * factor_ : atFrame(asked.frames);
}

std::int64_t FreezeClock::totalUpTo(std::uint32_t rank) const {
    const auto after = std::ranges::upper_bound(cut_.freezes, rank, {}, &VideoCut::Freeze::position);
    return starts_[static_cast<std::size_t>(after - cut_.freezes.begin())];
}

std::vector<std::int64_t> stillFrames(std::int64_t frames, const CMTime& frameDuration) {
    constexpr std::int64_t denseStart = 8;
    constexpr std::int64_t denseEnd = 3;
    constexpr std::int64_t leastStep = 3;
    constexpr double mostPerSecond = 20;
    const std::int64_t step =
        std::max<std::int64_t>(leastStep, std::llround(1 / (mostPerSecond * frameDuration.seconds())));
    std::vector<std::int64_t> result;
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        if (frame < denseStart || frame >= frames - denseEnd || (frame - denseStart + 1) % step == 0) {
            result.push_back(frame);
        }
    }
    return result;
}

} // namespace zelvra::passthrough
