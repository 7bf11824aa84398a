// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourceStream.h"
#include "ZelvraCore/passthrough/video/VideoTrackBuilder.h"

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is H.264 (`avc1`) and has no room for stills between
/// its pictures: no order counts are left between them, they are single fields, or the coding changes.
/// SplicePlan lays it out. A freeze is a row of IDR stills, so what follows depends on nothing before it;
/// decoding resumes at IDR pictures only. Stills are decoded with the sequence parameter set of the stream
/// that follows, so no decoder has to allocate its buffers again. Source samples are referred to and never
/// rewritten.
///
/// H.264 has no way to hide a picture: players show the hidden ones before a resuming picture for a tick
/// each, which few screens are fast enough for. StillTrack hides nothing after the start and is preferred.
///
/// One movie, one thread. What rules a splice out throws CannotPassThrough or bitstream::BitstreamError, and
/// is known when the movie is planned.
class H264SpliceTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed and must outlive this.
    explicit H264SpliceTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return stream_.pictures(); }
    bool fullRange() const override { return stream_.sps().vui && stream_.sps().vui->fullRange; }
    FreezeEncoding freezeEncoding() const override { return encoding_; }
    VideoPlan plan(const VideoCut& cut) override;
    OutputTrack build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                      SpoolStore& spool) override;

private:
    /// The IDR picture that a run starts at.
    struct Head {
        h264::Sps sps;
        std::uint32_t idrPicId = 0;
    };

    StillCodings codingsOf(const SamplePlan& plan, std::size_t freezes);
    Head readHead(const SamplePlan& plan, const PlannedSample& sample) const;

    SourceStream<H264Codec> stream_;
    FreezeEncoding encoding_;
};

} // namespace zelvra::passthrough
