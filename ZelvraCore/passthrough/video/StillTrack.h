// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/StillCoder.h"
#include "ZelvraCore/passthrough/video/StillPlan.h"

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is H.264 (`avc1`): plans it by StillPlan, then codes
/// the stills out of the freeze clips' first pictures. Source samples are named, never read, except around
/// cuts, where their headers are.
///
/// One movie, one thread. What rules stills out throws CannotPassThrough or bitstream::BitstreamError, and is
/// known when the movie is planned.
class StillTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed for as long as this lives.
    explicit StillTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return stream_.pictures(); }
    bool fullRange() const override { return stream_.sps().vui && stream_.sps().vui->fullRange; }
    FreezeEncoding freezeEncoding() const override { return encoding_; }
    SamplePlan& plan(const VideoCut& cut) override;
    bool wantsLeadIn() const override { return plan_.leadIn.has_value(); }
    bool wantsLeadOut() const override { return plan_.leadOut.has_value(); }
    OutputTrack build(const Clips& clips, SpoolStore& spool) override;

private:
    StillPlaces placeAll();
    StillPlace placeFor(const StillSite& site);
    StillPlace idrPlaceFor(const StillSite& site);
    std::vector<h264::StillHeader> recoveryHeaders(const StillSite& site);
    h264::StillHeader insertedHeader(const StillSite& site);

    SourceStream<H264Codec> stream_;
    FreezeEncoding encoding_;
    StillPlan plan_;
    StillPlaces places_;
    bool recoveryStarted_ = false;          ///< a place before has the picture that the stream starts with
    std::set<std::uint32_t> lastIdrPicIds_; ///< of our own IDR pictures, at the place before
};

} // namespace zelvra::passthrough
