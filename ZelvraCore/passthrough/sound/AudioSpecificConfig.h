// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// The configuration of an AAC decoder (ISO/IEC 14496-3 clause 1.6.2.1), as much of it as is needed here, and
/// the `esds` box that carries it.
struct AudioSpecificConfig {
    /// AAC-LC without band replication, parametric stereo or a program of its own (channel configuration 0).
    bool isPlainLowComplexity = false;
    std::uint32_t sampleRate = 0;
    std::uint8_t channelConfiguration = 0; ///< table 1.19
    std::uint32_t packetFrames = 1024;     ///< or 960

    std::uint32_t channels() const { return channelConfiguration == 7 ? 8 : channelConfiguration; }
};

/// Reads the payload of an `esds` box (ISO/IEC 14496-1 clause 7.2.6). Throws CannotPassThrough if it
/// describes something else than AAC, MediaError::corrupt if it ends too early.
AudioSpecificConfig audioSpecificConfig(std::span<const std::uint8_t> esdsPayload);

/// A whole `esds` box for AAC. `bitRate` is bits a second.
std::vector<std::uint8_t> esdsBox(std::span<const std::uint8_t> audioSpecificConfig, std::uint32_t bitRate);

} // namespace zelvra::passthrough
