// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/render/SoundTrack.h"

#include <vector>

namespace zelvra {

/// One way to make a sound track. Internal: SoundTrack chooses.
class SoundTrack::Maker {
public:
    Maker() = default;
    Maker(const Maker&) = delete;
    Maker& operator=(const Maker&) = delete;
    virtual ~Maker() = default;

    virtual CMTime lead() const = 0;
    virtual passthrough::OutputTrack build(const CMTime& leadIn, passthrough::SpoolStore& spool,
                                           const std::function<void(double)>& progress) = 0;
};

/// Keeps the source's packets. Throws passthrough::CannotPassThrough where that cannot be.
std::unique_ptr<SoundTrack::Maker> makeCopiedSound(const Asset& source, std::vector<SoundPiece> pieces,
                                                   MovieContainer container);

/// Encodes the source's sound as AAC.
std::unique_ptr<SoundTrack::Maker> makeEncodedSound(const Asset& source, std::span<const SoundPiece> pieces,
                                                    MovieContainer container, std::stop_token stop);

/// A track with what the source's says beside its samples.
passthrough::OutputTrack outputTrackLike(const isobmff::Track& source);

} // namespace zelvra
