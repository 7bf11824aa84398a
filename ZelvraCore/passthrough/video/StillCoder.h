// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourceStream.h"
#include "ZelvraCore/passthrough/video/StillCoding.h"
#include "ZelvraCore/passthrough/video/VideoTrackBuilder.h"

#include <filesystem>
#include <map>
#include <vector>

namespace zelvra::passthrough {

/// Gives a planned H.264 track its bytes: refers to the source's samples, and codes the stills from the first
/// pictures of the freeze clips. The sites of the stills and their headers were decided before. Lives for one
/// movie.
class StillCoder {
public:
    /// `source` is borrowed.
    explicit StillCoder(const SourceStream<H264Codec>& source) : source_(source) {}

    /// See VideoTrackBuilder::build. Throws BitstreamError if a clip does not fit, MediaError if it cannot be
    /// read.
    OutputTrack build(const VideoPlan& plan, std::int64_t editStart, const VideoTrackBuilder::Clips& clips,
                      SpoolStore& spool);

private:
    /// The first picture of a clip, ready to be coded any number of times.
    struct Picture {
        h264::ParameterSets own;
        std::vector<bitstream::Bytes> slices;
        int ppsId = 0;                              ///< of the picture parameter set that its stills use
        std::vector<bitstream::Bytes> setsInSample; ///< that each of its stills carries
    };
    struct OwnPps {
        int id = 0;
        bitstream::Bytes nal;
        h264::Sps sps; ///< that it refers to
    };

    Picture read(const std::filesystem::path& clip, const StillCoding& coding);
    const OwnPps& ownPps(const h264::Pps& pps, const h264::Sps& sps);
    std::vector<std::uint8_t> code(const Picture& picture, const h264::Sps& sps,
                                   h264::StillHeader header) const;
    bitstream::Bytes sampleEntry() const;

    const SourceStream<H264Codec>& source_;
    std::map<bitstream::Bytes, OwnPps> sets_; ///< by their content under id 0
};

} // namespace zelvra::passthrough
