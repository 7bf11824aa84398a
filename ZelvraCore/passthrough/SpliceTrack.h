#pragma once

#include "ZelvraCore/bitstream/hevc/CarriedMetadata.h"
#include "ZelvraCore/bitstream/hevc/HevcConfiguration.h"
#include "ZelvraCore/bitstream/hevc/Hiding.h"
#include "ZelvraCore/bitstream/hevc/Identity.h"
#include "ZelvraCore/bitstream/hevc/PictureScanner.h"
#include "ZelvraCore/passthrough/PictureWindow.h"
#include "ZelvraCore/passthrough/VideoTrackBuilder.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is HEVC (`hvc1`): plans it by SplicePlan, then
/// rewrites the slice headers of hidden pictures and the ids of the freeze clips. Shown source samples are
/// named, never read, but for those that may carry parameter sets.
///
/// One movie, one thread. Whatever rules a passthrough out throws CannotPassThrough or
/// bitstream::BitstreamError.
class SpliceTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed for as long as this lives.
    explicit SpliceTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return pictures_; }
    bool fullRange() const override { return sps_->vui && sps_->vui->fullRange; }
    FreezeEncoding freezeEncoding() const override;
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

    void observe(const hevc::PictureScanner& scanner, const hevc::PictureFacts& facts);
    Clip readClip(const SourceVideo& clip, std::uint32_t freeze);
    hevc::Identity identify(const hevc::HevcConfiguration& configuration);
    StoredBytes sourceBytes(const PlannedSample& planned, SpoolStore& spool);
    StoredBytes freezeBytes(const Clip& clip, const SourceVideo& video, std::uint32_t part,
                            SpoolStore& spool) const;
    bool mayCarryParameterSets(std::uint32_t index) const;
    bitstream::Bytes sampleEntry() const;

    const SourceVideo& source_;
    hevc::HevcConfiguration configuration_;
    SourcePictures pictures_;
    PictureWindow<hevc::PictureScanner, hevc::PictureFacts> window_;
    std::optional<hevc::Sps> sps_; ///< of the first picture, and so of all
    std::set<int> vpsIds_;         ///< used by the source, then by clips too
    std::set<int> spsIds_;
    std::set<int> ppsIds_;
    bool parameterSetsInSamples_ = false;
    hevc::TwinIds twins_;
    hevc::ParameterSets runSets_; ///< in force at the sample being written
    /// Parameter sets of clips that were given ids, by their bytes; clips of one source mostly share theirs.
    std::map<std::vector<bitstream::Bytes>, hevc::Identity> identities_;
    std::vector<hevc::HevcConfiguration> inserted_;
    VideoCut cut_;
    SamplePlan plan_;
};

} // namespace zelvra::passthrough
