// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::h264 {

/// The nal_unit_type values that are handled here (ITU-T H.264 table 7-1); streams contain others too.
enum class NalType : std::uint8_t {
    slice = 1,
    partitionA = 2,
    partitionB = 3,
    partitionC = 4,
    idrSlice = 5,
    sei = 6,
    sps = 7,
    pps = 8,
    accessUnitDelimiter = 9,
    endOfSequence = 10,
    endOfStream = 11,
    fillerData = 12,
    spsExtension = 13,
    prefix = 14,
    subsetSps = 15,
    auxiliarySlice = 19,
    sliceExtension = 20,
};

/// Requires a NAL unit that is not empty.
inline NalType nalType(bitstream::ByteView nal) {
    return static_cast<NalType>(nal.front() & 0x1F);
}
inline int nalRefIdc(bitstream::ByteView nal) {
    return nal.front() >> 5 & 3;
}

/// Whether it is a slice of the primary coded picture, partitioned slices included.
inline bool isSlice(NalType type) {
    return type >= NalType::slice && type <= NalType::idrSlice;
}

} // namespace zelvra::h264
