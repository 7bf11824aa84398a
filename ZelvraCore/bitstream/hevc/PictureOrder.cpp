// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/PictureOrder.h"

namespace zelvra::hevc {

std::int64_t PictureOrder::next(const Sps& sps, const SliceHeader& slice, bool startsSequence) {
    const std::int64_t range = std::int64_t{1} << sps.pocLsbBits;
    const std::int64_t lsb = slice.pocLsb;
    const std::int64_t previousLsb = previous_ & (range - 1);
    std::int64_t msb = startsSequence ? 0 : previous_ - previousLsb;
    if (!startsSequence && lsb < previousLsb && previousLsb - lsb >= range / 2) {
        msb += range;
    } else if (!startsSequence && lsb > previousLsb && lsb - previousLsb > range / 2) {
        msb -= range;
    }
    const std::int64_t poc = msb + lsb;
    if (slice.temporalId == 0 && !isLeading(slice.nalType) && !isSubLayerNonReference(slice.nalType)) {
        previous_ = poc;
    }
    return poc;
}

} // namespace zelvra::hevc
