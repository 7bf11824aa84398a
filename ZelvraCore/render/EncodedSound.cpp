// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/EncodedSound.h"

#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/passthrough/sound/SilentSound.h"
#include "ZelvraCore/passthrough/sound/SoundSampleEntry.h"
#include "ZelvraCore/passthrough/sound/SoundSamples.h"

#include <optional>
#include <utility>

namespace zelvra {

EncodedSound::EncodedSound(const Asset& movie, std::span<const SoundPiece> pieces, MovieContainer container,
                           std::stop_token stop)
    : movie_(movie), encoder_(media::SoundRenderer(movie, pieces, std::move(stop))), container_(container) {}

passthrough::OutputTrack EncodedSound::build(const CMTime& editStart, passthrough::SpoolStore& spool) {
    const isobmff::Track packets = encode(spool);
    const passthrough::SoundPlan plan = planned(packets, editStart);
    const auto channels = static_cast<std::uint32_t>(encoder_.channels());
    const passthrough::StoredBytes silence =
        spool.append(passthrough::silentAacPacket(static_cast<std::uint8_t>(channels)));
    passthrough::OutputTrack track =
        soundTrackLike(*media::movieOf(movie_).firstTrack(isobmff::soundHandler));
    track.timescale = packets.timescale;
    track.sampleEntry =
        passthrough::aacSampleEntry(encoder_.audioSpecificConfig(), packets.timescale, channels,
                                    static_cast<std::uint32_t>(encoder_.bitRate()), container_);
    track.samples = passthrough::soundSamples(plan, passthrough::SoundPackets(packets),
                                              passthrough::Store::spool, {silence});
    track.mediaDuration = plan.mediaDuration;
    track.editStart = plan.editStart;
    track.editDuration = plan.editDuration;
    track.rollDistance = -1;
    return track;
}

/// Packets in the spool, as if they were a source.
isobmff::Track EncodedSound::encode(passthrough::SpoolStore& spool) {
    isobmff::Track packets;
    packets.timescale = static_cast<std::uint32_t>(encoder_.sampleRate());
    while (const std::optional<media::SoundPacket> packet = encoder_.next()) {
        const passthrough::StoredBytes stored = spool.append(packet->bytes);
        isobmff::Sample sample;
        sample.offset = stored.offset;
        sample.size = stored.size;
        sample.decodeTime = packet->decodeTime;
        sample.duration = static_cast<std::uint32_t>(packet->duration);
        packets.samples.push_back(sample);
    }
    return packets;
}

/// One piece: the silence of freezes is encoded with the rest.
passthrough::SoundPlan EncodedSound::planned(const isobmff::Track& packets, const CMTime& editStart) const {
    const passthrough::SoundSource source{packets.timescale,
                                          passthrough::SoundPackets(packets),
                                          {0, encoder_.totalFrames(), encoder_.priming()},
                                          packets.timescale,
                                          static_cast<std::uint32_t>(encoder_.packetFrames()),
                                          1};
    const SoundPiece whole{SoundPiece::Kind::source, CMTime::zero(), time(encoder_.totalFrames())};
    return passthrough::planSound(source, {&whole, 1}, editStart);
}

} // namespace zelvra
