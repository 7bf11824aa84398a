// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/records/FreezeEncoding.h"
#include "ZelvraCore/records/SoundPiece.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace zelvra {

/// One export that carries the source's compressed pictures over. It is asked first what freeze clips must
/// match, and which further pictures it wants as clips; when these are encoded it writes the movie.
///
/// One thread. Whatever rules a passthrough out throws passthrough::CannotPassThrough or
/// bitstream::BitstreamError, from every operation; nothing has been written then. Other failures are
/// MediaError.
class PassthroughRender {
public:
    /// Reads headers around the cuts. `plan.passthrough` holds.
    PassthroughRender(const Asset& source, const SourceInfo& info, const RenderPlan& plan);
    ~PassthroughRender();

    FreezeEncoding freezeEncoding() const;

    /// Presentation times of the frames whose clean copies are wanted, one frame long each, beside the
    /// freezes.
    const std::vector<CMTime>& extraFrames() const { return extraFrames_; }

    struct Job {
        std::span<const std::filesystem::path> freezeClips; ///< one for each highlight of the plan
        std::span<const std::filesystem::path> extraClips;  ///< one for each of `extraFrames`
        std::filesystem::path output;
        MovieContainer container = MovieContainer::mpeg4;
        bool includeAudio = true;
        std::function<void(double)> progress; ///< 0...1
        std::function<void(const std::string&)> notice;
        std::stop_token stop;
    };
    void write(const Job& job);

private:
    class Pictures;

    const Asset& source_;
    const SourceInfo& info_;
    const RenderPlan& plan_;
    std::unique_ptr<Pictures> pictures_;
    std::vector<CMTime> extraFrames_;
};

} // namespace zelvra
