// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// NAL units as samples of a movie file hold them: each behind its length in 1, 2 or 4 bytes, big-endian
/// (ISO/IEC 14496-15 clause 5.3.3).

/// The NAL units of a sample, in order, as views into it. Empty ones are left out. Throws BitstreamError
/// (corrupt) where a length goes beyond the sample's end, (unsupported) for a length size other than 1, 2, 4.
std::vector<ByteView> splitNalUnits(ByteView sample, int lengthSize);

/// Appends one NAL unit behind its length. Throws BitstreamError (unsupported) where the length has no room
/// in `lengthSize` bytes.
void appendNalUnit(Bytes& sample, ByteView nal, int lengthSize);

template <class NalUnitRange>
Bytes joinNalUnits(const NalUnitRange& nals, int lengthSize) {
    Bytes sample;
    for (const auto& nal : nals) {
        appendNalUnit(sample, nal, lengthSize);
    }
    return sample;
}

} // namespace zelvra::bitstream
