// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// NAL units as they are stored in samples of a movie file: each follows its length, which takes 1, 2 or 4
/// bytes, big-endian (ISO/IEC 14496-15 clause 5.3.3).

/// The NAL units of a sample, in order, as views into it. Empty ones are left out. Throws BitstreamError
/// (corrupt) if a length goes beyond the sample's end, (unsupported) for a length size other than 1, 2, 4.
std::vector<ByteView> splitNalUnits(ByteView sample, int lengthSize);

/// Appends the length of a NAL unit and the NAL unit. Throws BitstreamError (unsupported) if the length does
/// not fit in `lengthSize` bytes.
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
