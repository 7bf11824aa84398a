// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/VideoCut.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// How long freezes last in output ticks. Frames start at exact multiples of the cut's frame duration if a
/// moderate timescale allows it; otherwise each time is rounded on its own, so that errors do not add up.
class FreezeClock {
public:
    /// `leastFactor` is the least number of output ticks for one tick of the source.
    FreezeClock(const VideoCut& cut, std::uint32_t sourceTimescale, std::uint32_t leastFactor);

    std::uint32_t factor() const { return factor_; }
    /// Ticks from the start of a freeze to its frame of that number.
    std::int64_t atFrame(std::int64_t frame) const;
    std::int64_t length(std::size_t freeze) const;

    /// Ticks that all freezes at positions up to and including that rank last together.
    std::int64_t totalUpTo(std::uint32_t rank) const;
    std::int64_t total() const { return starts_.back(); }
    /// Ticks that the freezes before that one last together.
    std::int64_t totalBefore(std::size_t freeze) const { return starts_[freeze]; }

private:
    const VideoCut& cut_;
    std::uint32_t timescale_; ///< of the output
    std::uint32_t factor_;
    std::vector<std::int64_t> starts_; ///< running sum of the lengths
};

/// Frames of a freeze at which its still is stored, from 0. The first ones are for decoders that output a
/// picture only after they got several more. Every third one after them (at most twenty a second) lets seeks
/// into the freeze find it. It also helps players that schedule their screen by the mean length of the last
/// frames: after stills that last half a second, Chromium drops pictures. Because of the last ones,
/// converters to a constant rate do not repeat a freeze at the movie's end once more.
std::vector<std::int64_t> stillFrames(std::int64_t frames, const CMTime& frameDuration);

} // namespace zelvra::passthrough
