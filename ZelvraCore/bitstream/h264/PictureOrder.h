// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/SliceHeader.h"

namespace zelvra::h264 {

/// Picture order counts by the decoding process of ITU-T H.264 clause 8.2.1, types 0, 1 and 2. Call `next`
/// with the first slice of every picture (of every field) in decode order. A value type: on a copy, `next`
/// computes the count of a picture that is not in the stream.
class PictureOrder {
public:
    /// The order count of the picture that starts with this slice; for a frame, the lower one of its two
    /// fields. After memory_management_control_operation 5 it is the count used for output, as if the picture
    /// were IDR.
    std::int64_t next(const Sps& sps, const SliceHeader& slice);

    /// frame_num of the previous reference picture in decode order (PrevRefFrameNum, clause 7.4.3), 0 after a
    /// reset.
    std::uint32_t previousReferenceFrameNum() const { return previousReferenceFrameNum_; }

private:
    struct Counts {
        std::int64_t top = 0;
        std::int64_t bottom = 0;
    };

    Counts nextOfType0(const Sps& sps, const SliceHeader& slice);
    Counts nextByFrameNum(const Sps& sps, const SliceHeader& slice);
    static std::int64_t expectedOfType1(const Sps& sps, const SliceHeader& slice,
                                        std::int64_t absoluteFrameNum);
    void noteReferenceFrameNum(const Sps& sps, const SliceHeader& slice, bool reset);

    // Type 0
    std::int64_t previousMsb_ = 0;
    std::int64_t previousLsb_ = 0;
    // Types 1 and 2
    std::int64_t previousFrameNumOffset_ = 0;
    std::uint32_t previousFrameNum_ = 0;

    std::uint32_t previousReferenceFrameNum_ = 0;
};

} // namespace zelvra::h264
