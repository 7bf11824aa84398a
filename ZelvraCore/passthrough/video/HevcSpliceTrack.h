// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/CarriedMetadata.h"
#include "ZelvraCore/bitstream/hevc/Hiding.h"
#include "ZelvraCore/bitstream/hevc/Identity.h"
#include "ZelvraCore/passthrough/video/SourceStream.h"
#include "ZelvraCore/passthrough/video/VideoTrackBuilder.h"

#include <filesystem>
#include <map>
#include <vector>

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is HEVC (`hvc1`): plans it by SplicePlan, then
/// rewrites the slice headers of hidden pictures and the ids of the freeze clips. Shown source samples are
/// named, never read, but for those that may carry parameter sets.
///
/// One movie, one thread. Whatever rules a passthrough out throws CannotPassThrough or
/// bitstream::BitstreamError.
class HevcSpliceTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed for as long as this lives.
    explicit HevcSpliceTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return stream_.pictures(); }
    bool fullRange() const override { return stream_.sps().vui && stream_.sps().vui->fullRange; }
    FreezeEncoding freezeEncoding() const override { return encoding_; }
    SamplePlan& plan(const VideoCut& cut) override;
    OutputTrack build(const Clips& clips, SpoolStore& spool) override;

private:
    /// A freeze clip under the ids it has in the movie.
    struct Clip {
        hevc::ParameterSets own;
        int nalLengthSize = 4;
        hevc::Identity identity;
        hevc::CarriedMetadata metadata; ///< of the frozen picture
    };

    Clip readClip(const SourceVideo& clip, std::uint32_t freeze);
    hevc::Identity identify(const hevc::HevcConfiguration& configuration);
    StoredBytes sourceBytes(const PlannedSample& planned, SpoolStore& spool);
    StoredBytes freezeBytes(const Clip& clip, const SourceVideo& video, std::uint32_t part,
                            SpoolStore& spool) const;
    bool mayCarryParameterSets(std::uint32_t index) const;
    bitstream::Bytes sampleEntry() const;

    const SourceVideo& source_;
    SourceStream<HevcCodec> stream_;
    FreezeEncoding encoding_;
    ParameterSetIds usedIds_; ///< by the source, then by clips and twins too
    hevc::TwinIds twins_;
    hevc::ParameterSets runSets_; ///< in force at the sample being written
    /// Parameter sets of clips that were given ids, by their bytes; clips of one source mostly share theirs.
    std::map<std::vector<bitstream::Bytes>, hevc::Identity> identities_;
    std::vector<hevc::HevcConfiguration> inserted_;
    VideoCut cut_;
    SamplePlan plan_;
};

} // namespace zelvra::passthrough
