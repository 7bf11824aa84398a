// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelvra::test {

/// A sound whose time can be told to the sample: band-limited noise that never repeats, which survives lossy
/// coding and gives one sharp peak of correlation, and under it tones that rise every 100 ms, for ears.

/// The first `count` samples at `rate`, one channel, from -1 to 1.
std::vector<float> numberedSound(std::int64_t count, int rate);

/// The same as signed 16-bit little-endian samples, `channels` interleaved; each channel is a tenth quieter
/// than the one before.
std::string numberedSoundBytes(std::int64_t count, int rate, int channels);

/// Where a piece of sound comes from.
struct SoundLocation {
    std::int64_t sample = 0; ///< the index in `reference` that the piece starts at
    double correlation = 0;  ///< normalised, 1 where the two are the same but for loudness
};

/// Finds `piece` in `reference` within `reach` samples around the index `expected`. Nothing where it is
/// silent or nowhere correlates by at least one half.
std::optional<SoundLocation> locateSound(std::span<const float> piece, std::span<const float> reference,
                                         std::int64_t expected, std::int64_t reach);

/// The greatest magnitude; 0 for nothing.
float peak(std::span<const float> sound);

} // namespace zelvra::test
