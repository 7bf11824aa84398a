// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/sound/SoundEncoder.h"
#include "ZelvraCore/passthrough/sound/SoundPlan.h"
#include "ZelvraCore/render/SoundTrackBuilder.h"

#include <span>
#include <stop_token>

namespace zelvra {

/// A sound track that is encoded anew as AAC, exact to the sample; freezes are encoded as silence.
class EncodedSound final : public SoundTrackBuilder {
public:
    /// Throws MediaError if the source's sound cannot be decoded.
    EncodedSound(const Asset& movie, std::span<const SoundPiece> pieces, MovieContainer container,
                 std::stop_token stop);

    CMTime lead() const override { return time(encoder_.priming()); }
    passthrough::OutputTrack build(const CMTime& editStart, passthrough::SpoolStore& spool) override;

private:
    CMTime time(std::int64_t frames) const { return {frames, encoder_.sampleRate()}; }
    isobmff::Track encode(passthrough::SpoolStore& spool);
    passthrough::SoundPlan planned(const isobmff::Track& packets, const CMTime& editStart) const;

    Asset movie_;
    media::SoundEncoder encoder_;
    MovieContainer container_;
};

} // namespace zelvra
