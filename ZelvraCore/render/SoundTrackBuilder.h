// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/records/SoundPiece.h"

#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace zelvra {

/// Makes the sound track of one passthrough movie; one class for each strategy, as with VideoTrackBuilder.
///
/// One movie, one thread.
class SoundTrackBuilder {
public:
    SoundTrackBuilder() = default;
    SoundTrackBuilder(const SoundTrackBuilder&) = delete;
    SoundTrackBuilder& operator=(const SoundTrackBuilder&) = delete;
    virtual ~SoundTrackBuilder() = default;

    /// The least media time at which the track's edit can start, as the decoder must warm up before. The
    /// picture's edit should start no earlier.
    virtual CMTime lead() const = 0;

    /// Makes the track. Its edit starts at the media time `editStart`, as the picture's does, or at `lead()`
    /// if that is later. Samples of the source are in Store::source, other bytes are appended to `spool`.
    /// At most once. Throws MediaError: `cancelled`, `unwritable`, and if the source cannot be read.
    virtual passthrough::OutputTrack build(const CMTime& editStart, passthrough::SpoolStore& spool) = 0;
};

struct ChosenSound {
    std::unique_ptr<SoundTrackBuilder> builder;
    /// Why the sound is not the source's own, as a line for the user; `nullopt` if it is.
    std::optional<std::string> notice;
};

/// Chooses how to make the sound of a movie that is made up of `pieces`: CopiedSound if the codec and the
/// container allow it, else EncodedSound. `source` has sound. Throws MediaError if the source cannot be read,
/// or if its sound can be neither kept nor decoded.
ChosenSound chooseSound(const Asset& source, std::span<const SoundPiece> pieces, MovieContainer container,
                        std::stop_token stop = {});

/// A sound track without samples, with the language and date of the source's.
passthrough::OutputTrack soundTrackLike(const isobmff::Track& source);

} // namespace zelvra
