// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/passthrough/video/SamplePlan.h"
#include "ZelvraCore/passthrough/video/VideoCut.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <filesystem>
#include <span>

namespace zelvra::passthrough {

/// Makes the video track of one passthrough movie; one kind for each way of putting freezes into a coded
/// stream. First it is asked what freeze clips must match, then to plan, then, with the clips encoded, to
/// build.
///
/// One movie, one thread. Whatever rules a passthrough out throws CannotPassThrough or
/// bitstream::BitstreamError.
class VideoTrackBuilder {
public:
    VideoTrackBuilder() = default;
    VideoTrackBuilder(const VideoTrackBuilder&) = delete;
    VideoTrackBuilder& operator=(const VideoTrackBuilder&) = delete;
    virtual ~VideoTrackBuilder() = default;

    virtual const SourcePictures& pictures() const = 0;

    /// Whether the coded stream says that its samples use the full range.
    virtual bool fullRange() const = 0;

    /// What freeze clips must match.
    virtual FreezeEncoding freezeEncoding() const = 0;

    /// Plans the movie; asked for once. The caller may still shift its edit by delayEdit, where the sound
    /// needs a lead.
    virtual SamplePlan& plan(const VideoCut& cut) = 0;

    /// Whether the plan wants a clip of the first, or of the last shown picture (see Clips).
    virtual bool wantsLeadIn() const { return false; }
    virtual bool wantsLeadOut() const { return false; }

    struct Clips {
        std::span<const std::filesystem::path> freezes; ///< one for each freeze of the cut
        std::filesystem::path leadIn;                   ///< where wanted
        std::filesystem::path leadOut;
    };

    /// The planned track. Source samples are in store 0, all bytes of our own go to `spool`.
    virtual OutputTrack build(const Clips& clips, SpoolStore& spool) = 0;
};

} // namespace zelvra::passthrough
