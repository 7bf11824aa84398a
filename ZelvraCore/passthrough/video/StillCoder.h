// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/Still.h"
#include "ZelvraCore/passthrough/video/SourceStream.h"
#include "ZelvraCore/passthrough/video/VideoTrackBuilder.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace zelvra::passthrough {

/// How the stills of one place in an H.264 stream are coded: those of a freeze, of a lead-in or a lead-out.
struct StillPlace {
    h264::Sps sps;           ///< of the source, that they are decoded with
    bool repeatsSps = false; ///< they repeat it where the source carries parameter sets in its samples
    std::vector<h264::StillHeader> headers; ///< of the first still, of the second ...
    bool takesTurns = false; ///< behind the last header come the first again; otherwise the last one stays

    /// Which of `headers` the still of that number has.
    std::size_t headerOf(std::uint32_t part) const {
        return takesTurns ? part % headers.size() : std::min<std::size_t>(part, headers.size() - 1);
    }
};

struct StillPlaces {
    std::optional<StillPlace> leadIn;
    std::optional<StillPlace> cover;
    std::vector<StillPlace> freezes; ///< one for each freeze of the cut
    std::optional<StillPlace> leadOut;

    const StillPlace& of(const PlannedSample& still) const;
};

/// A place of IDR stills: neighbouring IDR pictures must differ in idr_pic_id (ITU-T H.264 clause 7.4.3), so
/// they take turns, and keep clear of those in `taken`.
StillPlace idrPlace(const h264::Sps& sps, const std::set<std::uint32_t>& taken);

/// The ids that a place's pictures have.
std::set<std::uint32_t> idrPicIdsOf(const StillPlace& place);

/// Fills a planned H.264 track with bytes: names the source's samples, and codes the stills out of freeze
/// clips' first pictures. Where stills stand and what their headers say was decided before.
class StillCoder {
public:
    /// `source` is borrowed.
    explicit StillCoder(const SourceStream<H264Codec>& source) : source_(source) {}

    /// Throws BitstreamError where a clip does not fit, MediaError where it cannot be read.
    OutputTrack build(const SamplePlan& plan, const StillPlaces& places,
                      const VideoTrackBuilder::Clips& clips, SpoolStore& spool);

private:
    /// The first picture of a clip, ready to be coded any number of times.
    struct Picture {
        h264::ParameterSets own;
        std::vector<bitstream::Bytes> slices;
        int ppsId = 0;                              ///< of a picture parameter set in the source's stream
        std::vector<bitstream::Bytes> setsInSample; ///< that each of its stills carries
    };
    struct OwnPps {
        int id = 0;
        bitstream::Bytes nal;
        h264::Sps sps; ///< that it refers to
    };

    Picture read(const std::filesystem::path& clip, const StillPlace& place);
    const OwnPps& ownPps(const h264::Pps& pps, const h264::Sps& sps);
    std::vector<std::uint8_t> code(const Picture& picture, const h264::Sps& sps,
                                   h264::StillHeader header) const;
    bitstream::Bytes sampleEntry() const;

    const SourceStream<H264Codec>& source_;
    std::map<bitstream::Bytes, OwnPps> sets_; ///< by their content under id 0
};

} // namespace zelvra::passthrough
