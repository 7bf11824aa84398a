// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/SoundTrackBuilder.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/render/CopiedSound.h"
#include "ZelvraCore/render/EncodedSound.h"

#include <utility>

namespace zelvra {

ChosenSound chooseSound(const Asset& source, std::span<const SoundPiece> pieces, MovieContainer container,
                        std::stop_token stop) {
    try {
        return {std::make_unique<CopiedSound>(source, pieces, container), std::nullopt};
    } catch (const passthrough::CannotPassThrough& obstacle) {
        return {std::make_unique<EncodedSound>(source, pieces, container, std::move(stop)),
                std::string("encoding the sound anew as AAC, because ") + obstacle.what()};
    }
}

passthrough::OutputTrack soundTrackLike(const isobmff::Track& source) {
    passthrough::OutputTrack track;
    track.kind = passthrough::OutputTrack::Kind::sound;
    track.language = source.language;
    track.creationTime = source.creationTime;
    return track;
}

} // namespace zelvra
