// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/passthrough/video/VideoCut.h"
#include "ZelvraCore/passthrough/video/VideoPlan.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <filesystem>
#include <span>

namespace zelvra::passthrough {

/// Makes the video track of one passthrough movie; one class for each strategy of putting freezes into a
/// coded stream. `freezeEncoding` says what freeze clips must match, `plan` decides which samples there are,
/// and `build` gives them their bytes once the clips are encoded.
///
/// Between calls a builder keeps only what it has read of the source. One movie, one thread. Whatever rules a
/// passthrough out throws CannotPassThrough or bitstream::BitstreamError.
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

    /// Reads headers around the cuts.
    virtual VideoPlan plan(const VideoCut& cut) = 0;

    struct Clips {
        std::span<const std::filesystem::path> freezes; ///< one for each freeze of the cut
        std::filesystem::path leadIn;  ///< of the first shown picture, if the plan has a lead-in
        std::filesystem::path leadOut; ///< of the last shown picture, if the plan has a lead-out
    };

    /// The planned track. Its edit starts at `editStart` (output ticks), which is not less than the plan's.
    /// Samples of the source are in Store::source, bytes of our own are appended to `spool`. `plan` is one
    /// that this builder made. Throws MediaError too: a clip cannot be read, the spool cannot be written.
    virtual OutputTrack build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                              SpoolStore& spool) = 0;
};

} // namespace zelvra::passthrough
