// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/sound/SoundCodec.h"
#include "ZelvraCore/passthrough/sound/SoundPlan.h"
#include "ZelvraCore/render/SoundTrackBuilder.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra {

/// A sound track of the source's own packets, with silent packets of the same codec during freezes.
class CopiedSound final : public SoundTrackBuilder {
public:
    /// Throws passthrough::CannotPassThrough, with a reason that completes "because ...", if the packets
    /// cannot be kept: the codec or the container does not allow it, or no silence in it is known to play.
    CopiedSound(const Asset& movie, std::span<const SoundPiece> pieces, MovieContainer container);

    CMTime lead() const override { return lead_; }
    passthrough::OutputTrack build(const CMTime& editStart, passthrough::SpoolStore& spool) override;

private:
    bool isPcm() const { return codec_.kind == passthrough::SoundCodec::Kind::pcm; }
    std::vector<std::uint8_t> silence() const;
    std::vector<std::uint8_t> silentPacket() const;

    Asset movie_;
    const isobmff::Track& track_; ///< of `movie_`
    passthrough::SoundCodec codec_;
    std::vector<SoundPiece> pieces_;
    std::vector<std::uint8_t> sampleEntry_;
    passthrough::SoundSource source_;
    std::vector<std::uint8_t> silence_;
    CMTime lead_;
};

} // namespace zelvra
