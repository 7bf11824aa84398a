#pragma once

#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"
#include "ZelvraCore/bitstream/h264/PictureScanner.h"
#include "ZelvraCore/bitstream/h264/Still.h"
#include "ZelvraCore/passthrough/PictureWindow.h"
#include "ZelvraCore/passthrough/StillPlan.h"
#include "ZelvraCore/passthrough/VideoTrackBuilder.h"

#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

namespace zelvra::passthrough {

/// The video track of a passthrough movie whose source is H.264 (`avc1`): plans it by StillPlan, then codes
/// the stills out of the freeze clips' first pictures. Source samples are named, never read, except around
/// cuts, where their headers are.
///
/// One movie, one thread. Whatever rules a passthrough out throws CannotPassThrough or
/// bitstream::BitstreamError.
class StillTrack final : public VideoTrackBuilder {
public:
    /// `source` is borrowed for as long as this lives.
    explicit StillTrack(const SourceVideo& source);

    const SourcePictures& pictures() const override { return pictures_; }
    bool fullRange() const override { return sps_->vui && sps_->vui->fullRange; }
    FreezeEncoding freezeEncoding() const override;
    SamplePlan& plan(const VideoCut& cut) override;
    bool wantsLeadIn() const override { return plan_.leadIn.has_value(); }
    bool wantsLeadOut() const override { return plan_.leadOut.has_value(); }
    OutputTrack build(const Clips& clips, SpoolStore& spool) override;

private:
    /// The first picture of a clip: its slices, and the picture parameter set they need in the movie.
    struct CodedStill {
        h264::ParameterSets own;
        std::vector<bitstream::Bytes> slices;
        int ppsId = 0;
        bitstream::Bytes pps;
        std::array<std::uint32_t, 2> idrPicIds{}; ///< taken in turn where the stills are IDR pictures
    };
    void observe(const h264::PictureScanner& scanner, const h264::PictureFacts& facts);
    CodedStill readStill(const std::filesystem::path& path);
    std::array<std::uint32_t, 2> chooseIdrPicIds(const StillSite& site);
    const StillSite& siteOf(const PlannedSample& still) const;
    std::uint32_t variantOf(const PlannedSample& still, const StillSite& site);
    h264::StillHeader header(const CodedStill& still, const StillSite& site, std::uint32_t variant);
    h264::StillHeader recoveryHeader(const StillSite& site, bool first);
    h264::StillHeader insertedHeader(const StillSite& site);
    std::vector<std::uint8_t> code(const CodedStill& still, const h264::StillHeader& header) const;
    bitstream::Bytes sampleEntry() const;

    const SourceVideo& source_;
    h264::AvcConfiguration configuration_;
    SourcePictures pictures_;
    PictureWindow<h264::PictureScanner, h264::PictureFacts> window_;
    std::optional<h264::Sps> sps_; ///< of the first picture, and so of all
    std::optional<h264::Pps> pps_;
    std::set<int> foreignPpsIds_;            ///< of the source
    std::map<bitstream::Bytes, int> ppsIds_; ///< of our own sets, by their content under id 0
    bool parameterSetsInSamples_ = false;
    bool recoveryStarted_ = false;
    std::optional<std::uint32_t> lastIdrPicId_; ///< of our own IDR pictures
    StillPlan plan_;
};

} // namespace zelvra::passthrough
