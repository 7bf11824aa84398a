// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::media {

/// Silence in the codec of a movie's first sound track, with the very settings of that track: packets that
/// may be put between the movie's own. Any thread.

/// A silent packet from an encoder, for AC-3, E-AC-3 and ALAC. Empty for other codecs, and if the encoder
/// here makes packets with other settings than the track's. Throws MediaError if the movie cannot be read.
std::vector<std::uint8_t> encodeSilentPacket(const Asset& movie);

/// Whether the track's decoder, after its first packets, takes `packet` for silence that lasts `packetFrames`
/// moments, and its own packets for sound that lasts as long. Throws MediaError if the movie cannot be
/// read.
bool decodesAsSilence(const Asset& movie, std::span<const std::uint8_t> packet, std::uint32_t packetFrames);

} // namespace zelvra::media
