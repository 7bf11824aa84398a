// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourceStream.h"
#include "ZelvraCore/passthrough/video/VideoTrackBuilder.h"

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is HEVC (`hvc1`): SplicePlan lays it out; the slice
/// headers of hidden pictures and the parameter set ids of the freeze clips are rewritten. Shown source
/// samples are referred to and not read, except those that may carry parameter sets.
///
/// One movie, one thread. Whatever rules a passthrough out throws CannotPassThrough or
/// bitstream::BitstreamError.
class HevcSpliceTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed and must outlive this.
    explicit HevcSpliceTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return stream_.pictures(); }
    bool fullRange() const override { return stream_.sps().vui && stream_.sps().vui->fullRange; }
    FreezeEncoding freezeEncoding() const override { return encoding_; }
    VideoPlan plan(const VideoCut& cut) override;
    OutputTrack build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                      SpoolStore& spool) override;

private:
    SourceStream<HevcCodec> stream_;
    FreezeEncoding encoding_;
};

} // namespace zelvra::passthrough
