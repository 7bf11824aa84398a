// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/VideoSignal.h"

namespace zelvra::bitstream {

namespace {

void skipAspectRatio(BitReader& reader) {
    constexpr std::uint32_t extended = 255; // width and height of the sample aspect ratio follow (table E-1)
    if (reader.bits(8) == extended) {
        reader.skip(32);
    }
}

bool parseSignal(BitReader& reader) {
    reader.skip(3); // video_format
    const bool fullRange = reader.flag();
    if (reader.flag()) {
        reader.skip(24); // primaries, transfer, matrix
    }
    return fullRange;
}

} // namespace

bool parseFullRange(BitReader& reader) {
    if (reader.flag()) {
        skipAspectRatio(reader);
    }
    if (reader.flag()) {
        reader.skip(1); // overscan_appropriate_flag
    }
    const bool fullRange = reader.flag() && parseSignal(reader);
    if (reader.flag()) { // chroma_loc_info_present_flag
        reader.ue();
        reader.ue();
    }
    return fullRange;
}

} // namespace zelvra::bitstream
