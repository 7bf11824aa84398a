// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundEncoder.h"
#include "ZelvraCore/passthrough/sound/SilentSound.h"
#include "ZelvraCore/passthrough/sound/SoundPlan.h"
#include "ZelvraCore/passthrough/sound/SoundSampleEntry.h"
#include "ZelvraCore/passthrough/sound/SoundSamples.h"
#include "ZelvraCore/render/SoundTrackMaker.h"

namespace zelvra {

namespace {

class EncodedSound final : public SoundTrack::Maker {
public:
    EncodedSound(const Asset& movie, std::span<const SoundPiece> pieces, MovieContainer container,
                 std::stop_token stop)
        : movie_(movie), encoder_(SoundRenderer(movie, pieces, std::move(stop))), container_(container) {}

    CMTime lead() const override { return time(encoder_.priming()); }

    passthrough::OutputTrack build(const CMTime& leadIn, passthrough::SpoolStore& spool,
                                   const std::function<void(double)>& progress) override {
        const StoredSound sound = encode(spool, progress);
        const passthrough::SoundPlan plan = planned(sound.packets, leadIn);
        const auto configuration = static_cast<std::uint8_t>(encoder_.channels());
        const passthrough::StoredBytes silence = spool.append(passthrough::silentAacPacket(configuration));
        passthrough::OutputTrack track = outputTrackLike(*movie_.movie().firstTrack(isobmff::soundHandler));
        track.timescale = sound.packets.timescale;
        track.sampleEntry = passthrough::aacSampleEntry(
            encoder_.audioSpecificConfig(), static_cast<std::uint32_t>(encoder_.sampleRate()),
            static_cast<std::uint32_t>(encoder_.channels()), static_cast<std::uint32_t>(encoder_.bitRate()),
            container_);
        track.samples =
            passthrough::soundSamples(plan, passthrough::SoundPackets(sound.packets), sound.store, {silence});
        track.mediaDuration = plan.mediaDuration;
        track.editStart = plan.editStart;
        track.editDuration = plan.editDuration;
        track.rollDistance = -1;
        return track;
    }

private:
    /// Packets in the spool, as if they were a source.
    struct StoredSound {
        isobmff::Track packets;
        std::uint32_t store = 0;
    };

    CMTime time(std::int64_t frames) const { return {frames, encoder_.sampleRate()}; }

    StoredSound encode(passthrough::SpoolStore& spool, const std::function<void(double)>& progress) {
        StoredSound sound;
        sound.packets.timescale = static_cast<std::uint32_t>(encoder_.sampleRate());
        const auto end = static_cast<double>(encoder_.priming() + encoder_.totalFrames());
        while (const std::optional<SoundPacket> packet = encoder_.next()) {
            const passthrough::StoredBytes stored = spool.append(packet->bytes);
            isobmff::Sample sample;
            sample.offset = stored.offset;
            sample.size = stored.size;
            sample.decodeTime = packet->decodeTime;
            sample.duration = static_cast<std::uint32_t>(packet->duration);
            sound.packets.samples.push_back(sample);
            sound.store = stored.store;
            if (progress) {
                progress(std::min(1.0, static_cast<double>(packet->decodeTime) / end));
            }
        }
        return sound;
    }

    /// One piece: the silence of freezes is encoded with the rest.
    passthrough::SoundPlan planned(const isobmff::Track& packets, const CMTime& leadIn) const {
        const auto rate = static_cast<std::uint32_t>(encoder_.sampleRate());
        const passthrough::SoundSource source{rate,
                                              passthrough::SoundPackets(packets),
                                              {0, encoder_.totalFrames(), encoder_.priming()},
                                              rate,
                                              static_cast<std::uint32_t>(encoder_.packetFrames()),
                                              1};
        const SoundPiece whole{SoundPiece::Kind::source, CMTime::zero(), time(encoder_.totalFrames())};
        return passthrough::planSound(source, {&whole, 1}, leadIn);
    }

    Asset movie_;
    SoundEncoder encoder_;
    MovieContainer container_;
};

} // namespace

std::unique_ptr<SoundTrack::Maker> makeEncodedSound(const Asset& source, std::span<const SoundPiece> pieces,
                                                    MovieContainer container, std::stop_token stop) {
    return std::make_unique<EncodedSound>(source, pieces, container, std::move(stop));
}

} // namespace zelvra
