// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/records/SoundPiece.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace zelvra {

/// The sound track of a movie whose pictures pass through. The source's own packets are kept, with silent
/// packets of the same codec during freezes; where the codec or the output's container does not allow that,
/// the sound is encoded anew as AAC, exact to the sample.
///
/// One thread, any.
class SoundTrack {
public:
    /// Source samples are in this store of the finished movie.
    static constexpr std::uint32_t sourceStore = 0;

    /// `source` has sound. `pieces` make up the finished movie. Throws MediaError where the source cannot be
    /// read, or where its sound can be neither kept nor decoded.
    SoundTrack(const Asset& source, std::span<const SoundPiece> pieces, MovieContainer container,
               std::stop_token stop = {});
    SoundTrack(SoundTrack&&) noexcept;
    SoundTrack& operator=(SoundTrack&&) noexcept;
    ~SoundTrack();

    /// The least media time at which the track's edit can start, as the decoder must warm up before. The
    /// picture's edit should start no earlier.
    CMTime lead() const;

    /// Why the sound is not the source's own, as a line for the user; nothing where it is.
    const std::optional<std::string>& notice() const { return notice_; }

    /// Makes the track; asked for once. Its edit starts at the media time `leadIn`, where the picture's
    /// starts, or at `lead()` if that is later. Bytes that are not the source's go to `spool`. `progress` is
    /// told from 0 to 1 how far the sound is encoded, if it is. Throws MediaError: `cancelled`, `unwritable`,
    /// and as the constructor does.
    passthrough::OutputTrack build(const CMTime& leadIn, passthrough::SpoolStore& spool,
                                   const std::function<void(double)>& progress = {});

    /// The two ways to make it.
    class Maker;

private:
    std::unique_ptr<Maker> maker_;
    std::optional<std::string> notice_;
};

} // namespace zelvra
