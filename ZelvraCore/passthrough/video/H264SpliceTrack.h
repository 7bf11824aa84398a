// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SplicePlan.h"
#include "ZelvraCore/passthrough/video/StillCoder.h"

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is H.264 (`avc1`) and has no room for stills between
/// its pictures: their order counts leave none, they are single fields, the coding changes. It is planned by
/// SplicePlan. A freeze is a row of IDR stills, so that nothing before matters to what comes after; decoding
/// resumes at IDR pictures only. Stills are decoded with the sequence parameter set of the stream that
/// follows, and thus make no decoder set its buffers up anew. Source samples are named, never rewritten.
///
/// Nothing in H.264 hides a picture: players show those in front of a resuming one for a tick each, which few
/// screens are fast enough for. StillTrack, which hides nothing in the middle, is to be preferred.
///
/// One movie, one thread. What rules a splice out throws CannotPassThrough or bitstream::BitstreamError, and
/// is known when the movie is planned.
class H264SpliceTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed for as long as this lives.
    explicit H264SpliceTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return stream_.pictures(); }
    bool fullRange() const override { return stream_.sps().vui && stream_.sps().vui->fullRange; }
    FreezeEncoding freezeEncoding() const override { return encoding_; }
    SamplePlan& plan(const VideoCut& cut) override;
    bool wantsLeadIn() const override { return places_.leadIn.has_value(); }
    bool wantsLeadOut() const override { return places_.leadOut.has_value(); }
    OutputTrack build(const Clips& clips, SpoolStore& spool) override;

private:
    /// The IDR picture that a run starts at.
    struct Head {
        h264::Sps sps;
        std::uint32_t idrPicId = 0;
    };

    void placeStills(std::size_t freezes);
    StillPlace& placeOf(const PlannedSample& still);
    Head readHead(const PlannedSample& sample) const;

    SourceStream<H264Codec> stream_;
    FreezeEncoding encoding_;
    SamplePlan plan_;
    StillPlaces places_;
};

} // namespace zelvra::passthrough
