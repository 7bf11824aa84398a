// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// Silent packets that can be written down without an encoder. Pure.

/// An AAC-LC access unit (ISO/IEC 14496-3 clause 4.4.2.1) without a single coefficient: silence at every
/// sample rate and packet length. `channelConfiguration` is 1 to 7, table 1.19.
std::vector<std::uint8_t> silentAacPacket(std::uint8_t channelConfiguration);

/// An Opus packet (RFC 6716) of `frames` moments at 48 kHz for one or two channels. Empty if no packet can
/// last so long.
std::vector<std::uint8_t> silentOpusPacket(std::uint32_t frames, std::uint32_t channels);

} // namespace zelvra::passthrough
