// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::hevc {

/// Metadata of a picture that displays use for colour mapping: Dolby Vision (NAL units of type 62), HDR10+
/// and similar (user data registered by ITU-T T.35 in supplemental messages). Each picture of a freeze must
/// repeat it, otherwise the colours jump.
struct CarriedMetadata {
    std::vector<bitstream::Bytes> beforeSlices; ///< whole NAL units
    std::vector<bitstream::Bytes> afterSlices;

    bool empty() const { return beforeSlices.empty() && afterSlices.empty(); }
};

/// The metadata in a sample. Messages of other kinds in the same NAL unit are left out. Throws BitstreamError
/// (corrupt) if the sample's NAL units do not fit in it. Malformed messages count as absent.
CarriedMetadata carriedMetadata(bitstream::ByteView sample, int nalLengthSize);

/// A sample with the metadata inserted before and after its slices.
bitstream::Bytes withMetadata(bitstream::ByteView sample, int nalLengthSize, const CarriedMetadata& metadata);

} // namespace zelvra::hevc
