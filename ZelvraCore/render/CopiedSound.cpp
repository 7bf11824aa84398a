// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/CopiedSound.h"

#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/media/sound/SilentPacket.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/sound/SilentSound.h"
#include "ZelvraCore/passthrough/sound/SoundSampleEntry.h"
#include "ZelvraCore/passthrough/sound/SoundSamples.h"

#include <optional>

namespace zelvra {

namespace {

using passthrough::CannotPassThrough;
using passthrough::SoundCodec;

/// Packets of PCM silence that are stored once and used as often as needed.
constexpr std::uint32_t silentPcmPackets = 1u << 14;

/// From the start of the first source piece to the end of the last one.
isobmff::ShownPiece shownWithin(const isobmff::Track& track, const isobmff::Movie& movie,
                                std::span<const SoundPiece> pieces) {
    const auto ticks = [&](const CMTime& time) {
        return time.converted(static_cast<std::int32_t>(track.timescale)).value;
    };
    std::optional<CMTime> start;
    CMTime end;
    for (const SoundPiece& piece : pieces) {
        if (piece.kind == SoundPiece::Kind::source) {
            start = start.value_or(piece.sourceStart);
            end = piece.sourceStart + piece.duration;
        }
    }
    if (!start) {
        return {};
    }
    const isobmff::TrackTimeline timeline(track, movie.timescale);
    return passthrough::shownBetween(timeline.pieces(), ticks(*start), ticks(end));
}

} // namespace

CopiedSound::CopiedSound(const Asset& movie, std::span<const SoundPiece> pieces, MovieContainer container)
    : movie_(movie),
      track_(*media::movieOf(movie_).firstTrack(isobmff::soundHandler)),
      codec_(passthrough::soundCodec(track_)),
      pieces_(pieces.begin(), pieces.end()),
      sampleEntry_(passthrough::soundSampleEntry(passthrough::soleSoundEntry(track_), codec_,
                                                 media::movieOf(movie_).isQuickTime(), container)),
      source_{track_.timescale,
              passthrough::SoundPackets(track_),
              shownWithin(track_, media::movieOf(movie_), pieces_),
              codec_.sampleRate,
              codec_.packetFrames,
              codec_.warmUpPackets},
      silence_(silence()),
      lead_(passthrough::soundLead(source_, pieces_)) {}

passthrough::OutputTrack CopiedSound::build(const CMTime& editStart, passthrough::SpoolStore& spool) {
    const passthrough::SoundPlan plan = passthrough::planSound(source_, pieces_, editStart);
    passthrough::OutputTrack track = soundTrackLike(track_);
    track.timescale = track_.timescale;
    track.sampleEntry = sampleEntry_;
    track.samples = passthrough::soundSamples(plan, source_.packets, passthrough::Store::source,
                                              {spool.append(silence_), isPcm() ? silentPcmPackets : 1});
    track.uniform = track_.uniform;
    track.mediaDuration = plan.mediaDuration;
    track.editStart = plan.editStart;
    track.editDuration = plan.editDuration;
    track.rollDistance = codec_.rollDistance;
    return track;
}

std::vector<std::uint8_t> CopiedSound::silence() const {
    if (isPcm()) {
        return std::vector<std::uint8_t>(std::size_t{silentPcmPackets} * track_.uniform.bytes,
                                         codec_.silentByte);
    }
    std::vector<std::uint8_t> packet = silentPacket();
    if (packet.empty() || !media::decodesAsSilence(movie_, packet, codec_.packetFrames)) {
        throw CannotPassThrough("its coding has no silence that is known to play");
    }
    return packet;
}

std::vector<std::uint8_t> CopiedSound::silentPacket() const {
    switch (codec_.kind) {
    case SoundCodec::Kind::aac: return passthrough::silentAacPacket(codec_.aacChannelConfiguration);
    case SoundCodec::Kind::opus: return passthrough::silentOpusPacket(codec_.packetFrames, codec_.channels);
    default: return media::encodeSilentPacket(movie_);
    }
}

} // namespace zelvra
