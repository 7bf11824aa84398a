// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/sound/SoundCodec.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// The sample entry of a sound track in the finished movie. MP4 has one plain form (ISO/IEC 14496-12 clause
/// 12.2.3); QuickTime has versions, and keeps the configuration of compressed sound in a `wave` box. Pure.

/// The source's entry as it is, or in the form of the output's container. A bit rate box (`btrt`) is removed,
/// since silence changes the rate. Throws CannotPassThrough if that container has no form for it: PCM in MP4,
/// and PCM of MP4 (`ipcm`) in QuickTime.
std::vector<std::uint8_t> soundSampleEntry(const isobmff::SampleEntry& source, const SoundCodec& codec,
                                           bool sourceIsQuickTime, MovieContainer container);

/// The entry of AAC-LC that was encoded here; `bitRate` is bits a second.
std::vector<std::uint8_t> aacSampleEntry(std::span<const std::uint8_t> audioSpecificConfig,
                                         std::uint32_t sampleRate, std::uint32_t channels,
                                         std::uint32_t bitRate, MovieContainer container);

} // namespace zelvra::passthrough
