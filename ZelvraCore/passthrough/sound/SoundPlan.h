// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/passthrough/sound/SoundPackets.h"
#include "ZelvraCore/records/SoundPiece.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// The sound track of the finished movie before a byte of it is read: which packets of the source, where
/// silent packets are between them, with which times. Pure functions of values; times are ticks of the source
/// track.
///
/// A freeze is a whole number of silent packets, which is calculated from the sum of all freezes so far. The
/// sound is cut at the packet boundary nearest to the picture's cut in the output. So sound and picture are
/// never more than half a packet apart, however many freezes there are, and every packet between the range's
/// ends is stored exactly once. For PCM, whose packets are single moments, this is exact to the sample.

/// What the plan needs to know about the source's sound.
struct SoundSource {
    std::uint32_t timescale = 0;
    SoundPackets packets;
    /// The stretch of the media that the source presents, and when. Of the rest, only packets are used that a
    /// decoder needs before it.
    isobmff::ShownPiece shown;
    std::uint32_t sampleRate = 0;    ///< that the codec counts in
    std::uint32_t packetFrames = 0;  ///< at that rate
    std::uint32_t warmUpPackets = 0; ///< to decode before a packet is decoded correctly
};

/// Packets in a row.
struct SoundRun {
    enum class Kind { source, silence };

    Kind kind = Kind::source;
    std::uint64_t firstPacket = 0; ///< of the source
    std::uint64_t packets = 0;
    std::int64_t decodeTime = 0; ///< of the first
    std::int64_t duration = 0;   ///< of all of them; silent packets share it evenly

    std::int64_t end() const { return decodeTime + duration; }
    bool operator==(const SoundRun&) const = default;
};

struct SoundPlan {
    std::vector<SoundRun> runs; ///< from decode time 0 on, without a gap
    std::int64_t editStart = 0;
    std::int64_t editDuration = 0;
    std::int64_t mediaDuration = 0;
};

/// The one stretch of a track that is between two presentation times; without duration if the track is silent
/// there. Throws CannotPassThrough if several edits cut the sound into pieces that do not join.
isobmff::ShownPiece shownBetween(std::span<const isobmff::ShownPiece> pieces, std::int64_t from,
                                 std::int64_t to);

/// The least time that must pass on the media's timeline before the output's edit starts, so that the
/// decoder's warm-up fits before it. The picture's edit should start no earlier.
CMTime soundLead(const SoundSource& source, std::span<const SoundPiece> pieces);

/// The sound's edit starts at the media time `editStart`, as the picture's does, or at soundLead if that is
/// later. Silent packets that are not heard come before it. Parts of the pieces that the source does not
/// present are filled with silent packets.
///
/// Throws CannotPassThrough if the pieces do not follow one another in the source, or times are too great for
/// the track's ticks; MediaError::outOfRange beyond `longestSound`.
SoundPlan planSound(const SoundSource& source, std::span<const SoundPiece> pieces, const CMTime& editStart);

} // namespace zelvra::passthrough
