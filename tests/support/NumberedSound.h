// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelvra::test {

/// A sound whose time can be found to the sample. It is band-limited noise that never repeats: it survives
/// lossy coding and correlates with one sharp peak. Mixed in are tones that rise every 100 ms, for listeners.

/// The first `count` samples at `rate`, one channel, from -1 to 1.
std::vector<float> numberedSound(std::int64_t count, int rate);

/// The same as signed 16-bit little-endian samples, `channels` interleaved. Each channel is a tenth quieter
/// than the one before it.
std::string numberedSoundBytes(std::int64_t count, int rate, int channels);

/// The place of a piece of sound in a reference.
struct SoundLocation {
    std::int64_t sample = 0; ///< index in `reference` at which the piece starts
    double correlation = 0;  ///< normalised; 1 if the two differ in loudness only
};

/// Finds `piece` in `reference` within `reach` samples around the index `expected`. `nullopt` if it is silent
/// or correlates by less than one half everywhere.
std::optional<SoundLocation> locateSound(std::span<const float> piece, std::span<const float> reference,
                                         std::int64_t expected, std::int64_t reach);

/// The greatest magnitude; 0 if `sound` is empty.
float peak(std::span<const float> sound);

} // namespace zelvra::test
