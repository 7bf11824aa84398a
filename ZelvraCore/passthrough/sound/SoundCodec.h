// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// What a sound track's sample entry says about its codec, for codecs whose packets can be kept with silent
/// packets between them. Pure; the coded packets themselves are not read.
struct SoundCodec {
    enum class Kind { pcm, aac, ac3, eac3, alac, opus };

    Kind kind = Kind::pcm;
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::uint32_t packetFrames = 1;  ///< moments of sound in a packet
    std::uint32_t warmUpPackets = 0; ///< to decode before a packet is decoded correctly
    std::int16_t rollDistance = 0;   ///< the same for the index, as OutputTrack has it
    /// The box that configures the decoder, whole: `esds`, `dac3`, `dec3`, `alac`, `dOps`. Empty for PCM.
    std::vector<std::uint8_t> configuration;
    std::uint8_t silentByte = 0;              ///< of PCM
    std::uint8_t aacChannelConfiguration = 0; ///< ISO/IEC 14496-3, table 1.19
};

/// The sample entry that all samples of the track have; the first if it has no samples. Throws
/// CannotPassThrough if there are several, or none.
const isobmff::SampleEntry& soleSoundEntry(const isobmff::Track& track);

/// Throws CannotPassThrough, with a reason that completes "because ...", for every other codec: those whose
/// decoders carry state from packet to packet (HE-AAC, AAC-LD, MP3, AMR, DTS ...), and settings whose silence
/// is not known.
SoundCodec soundCodec(const isobmff::Track& track);

} // namespace zelvra::passthrough
