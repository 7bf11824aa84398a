// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/BitReader.h"

namespace zelvra::h264 {

/// Skips the scaling lists of a parameter set (ITU-T H.264 clause 7.3.2.1.1.1): six of 16 entries, then
/// `count` - 6 of 64. A flag before each list says whether it is present.
void skipScalingLists(bitstream::BitReader& reader, int count);

/// Number of lists in a parameter set. With the 8x8 transform, the chroma planes of 4:4:4 have their own.
constexpr int scalingListCount(bool chroma444, bool transform8x8) {
    if (!transform8x8) {
        return 6;
    }
    return chroma444 ? 12 : 8;
}

} // namespace zelvra::h264
