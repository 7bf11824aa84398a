// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

namespace zelvra::hevc {

/// Picture order counts by the decoding process of ITU-T H.265 clause 8.3.1. Call `next` with the first slice
/// segment of every picture in decode order. A value type: use a copy to look ahead.
class PictureOrder {
public:
    /// `startsSequence`: an IRAP picture with NoRaslOutputFlag = 1 (IDR, BLA, the first of the stream, the
    /// first after an end of sequence).
    std::int64_t next(const Sps& sps, const SliceHeader& slice, bool startsSequence);

private:
    std::int64_t previous_ = 0; ///< of the previous picture with TemporalId 0 that others may refer to
};

} // namespace zelvra::hevc
