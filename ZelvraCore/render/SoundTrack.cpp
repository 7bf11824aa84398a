// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/SoundTrack.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/render/SoundTrackMaker.h"

namespace zelvra {

SoundTrack::SoundTrack(const Asset& source, std::span<const SoundPiece> pieces, MovieContainer container,
                       std::stop_token stop) {
    try {
        maker_ = makeCopiedSound(source, {pieces.begin(), pieces.end()}, container);
    } catch (const passthrough::CannotPassThrough& obstacle) {
        notice_ = std::string("encoding the sound anew as AAC, because ") + obstacle.what();
        maker_ = makeEncodedSound(source, pieces, container, std::move(stop));
    }
}

SoundTrack::SoundTrack(SoundTrack&&) noexcept = default;
SoundTrack& SoundTrack::operator=(SoundTrack&&) noexcept = default;
SoundTrack::~SoundTrack() = default;

CMTime SoundTrack::lead() const {
    return maker_->lead();
}

passthrough::OutputTrack SoundTrack::build(const CMTime& leadIn, passthrough::SpoolStore& spool,
                                           const std::function<void(double)>& progress) {
    return maker_->build(leadIn, spool, progress);
}

passthrough::OutputTrack outputTrackLike(const isobmff::Track& source) {
    passthrough::OutputTrack track;
    track.kind = passthrough::OutputTrack::Kind::sound;
    track.language = source.language;
    track.creationTime = source.creationTime;
    return track;
}

} // namespace zelvra
