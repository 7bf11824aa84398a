// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/FreezeEncoding.h"
#include "ZelvraCore/records/MovieContainer.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace zelvra {

/// One export that carries the source's compressed pictures over, in three steps. The constructor prepares:
/// it decides everything about the pictures, and so what freeze clips must match and which clips are needed
/// besides. When these are encoded, `write` adds the sound, builds the movie and writes it. Nothing changes
/// in between.
///
/// One thread. Whatever rules a passthrough out throws passthrough::CannotPassThrough or
/// bitstream::BitstreamError, from every operation; nothing has been written then. Other failures are
/// MediaError.
class PassthroughRender {
public:
    /// Reads headers around the cuts. `plan.passthrough` holds. All arguments are borrowed and must outlive
    /// this.
    PassthroughRender(const Asset& source, const SourceInfo& info, const RenderPlan& plan,
                      const Timeline& timeline);
    ~PassthroughRender();

    FreezeEncoding freezeEncoding() const;

    /// Presentation times of frames of the source that are needed as clips, besides the freezes: clean and
    /// one frame long. `nullopt` if the movie has no lead-in (lead-out), or if it starts (ends) with a
    /// freeze, whose clip serves; if the last picture is never shown again after a freeze.
    struct EdgeFrames {
        std::optional<CMTime> leadIn;
        std::optional<CMTime> leadOut;
        std::optional<CMTime> hold; ///< see passthrough::VideoCut
    };
    EdgeFrames edgeFrames() const;

    struct Job {
        std::span<const std::filesystem::path> freezeClips; ///< one for each highlight of the plan
        std::optional<std::filesystem::path> leadInClip;    ///< if `edgeFrames` asks for it
        std::optional<std::filesystem::path> leadOutClip;   ///< the same
        std::optional<std::filesystem::path> holdClip;      ///< the same
        std::filesystem::path output;
        MovieContainer container = MovieContainer::mpeg4;
        bool includeAudio = true;
        std::function<void(double)> progress; ///< 0...1
        std::function<void(const std::string&)> notice;
        std::stop_token stop;
    };
    void write(const Job& job) const;

private:
    class Pictures;
    class Writing;

    const Asset& source_;
    const Timeline& timeline_;
    std::unique_ptr<const Pictures> pictures_;
};

} // namespace zelvra
