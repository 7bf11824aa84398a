// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::hevc {

/// Metadata of the picture that a display maps colours by: Dolby Vision (NAL units of type 62) and HDR10+ and
/// its like (user data registered by ITU-T T.35 in supplemental messages). A freeze of a picture must carry
/// it in each of its pictures, or the colours jump.
struct CarriedMetadata {
    std::vector<bitstream::Bytes> beforeSlices; ///< whole NAL units
    std::vector<bitstream::Bytes> afterSlices;

    bool empty() const { return beforeSlices.empty() && afterSlices.empty(); }
};

/// What a sample carries. Messages of other kinds that share a NAL unit are left out. Throws BitstreamError
/// (corrupt) where the sample's NAL units do not fit; malformed messages count as none.
CarriedMetadata carriedMetadata(bitstream::ByteView sample, int nalLengthSize);

/// A sample with the metadata put around its slices.
bitstream::Bytes withMetadata(bitstream::ByteView sample, int nalLengthSize, const CarriedMetadata& metadata);

} // namespace zelvra::hevc
