// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourceStream.h"
#include "ZelvraCore/passthrough/video/VideoTrackBuilder.h"

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is H.264 (`avc1`): StillPlan lays it out, StillCoder
/// codes the stills from the first pictures of the freeze clips. Source samples are referred to and not read,
/// except around cuts, where their headers are read.
///
/// One movie, one thread. What rules stills out throws CannotPassThrough or bitstream::BitstreamError, and is
/// known when the movie is planned.
class StillTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed and must outlive this.
    explicit StillTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return stream_.pictures(); }
    bool fullRange() const override { return stream_.sps().vui && stream_.sps().vui->fullRange; }
    FreezeEncoding freezeEncoding() const override { return encoding_; }
    VideoPlan plan(const VideoCut& cut) override;
    OutputTrack build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                      SpoolStore& spool) override;

private:
    SourceStream<H264Codec> stream_;
    FreezeEncoding encoding_;
};

} // namespace zelvra::passthrough
