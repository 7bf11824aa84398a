// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/PictureOrder.h"

#include <set>

namespace zelvra::h264 {

/// The facts about one coded picture that the planner of a passthrough movie needs.
struct PictureFacts {
    bool idr = false;
    bool isReference = false;
    bool fieldPicture = false;           ///< coded as one or two fields
    bool hasInBandParameterSets = false; ///< the sample carries sequence or picture parameter sets
    bool hasAccessUnitDelimiter = false;
    bool resetsMemory = false;     ///< memory_management_control_operation 5
    bool frameNumGap = false;      ///< frames are missing before it, according to frame_num
    SliceType type = SliceType::i; ///< of its first slice
    int slices = 0;                ///< number of slice NAL units in the sample
    int spsId = 0;
    int ppsId = 0;
    std::uint32_t idrPicId = 0;
    std::uint32_t frameNum = 0;
    std::uint32_t pocLsb = 0; ///< pic_order_cnt_lsb as coded (POC type 0)
    /// Output order is by (period, poc). The period counts IDR pictures and memory resets since the scan
    /// began.
    std::int64_t poc = 0;
    int period = 0;
    std::optional<std::uint32_t> recoveryFrameCount; ///< of a recovery point message in the sample
    PictureOrder orderAfter; ///< copy it to get the order of a picture inserted after this one
};

/// Reads the facts of pictures, sample by sample in decode order, beginning at any sync sample. Reads only
/// parameter sets, supplemental messages and the header of a picture's first slice (of both fields if it is
/// coded in fields).
class PictureScanner {
public:
    /// `sets` are those of the sample entry, `nalLengthSize` is that of its record.
    PictureScanner(ParameterSets sets, int nalLengthSize);

    /// Throws BitstreamError, also if the sample contains no slice.
    PictureFacts scan(bitstream::ByteView sample);

    /// Parameter sets in force after the last sample.
    const ParameterSets& parameterSets() const { return sets_; }
    /// Ids seen so far, in the sample entry or in samples. New sets must not use them.
    const std::set<int>& ppsIdsSeen() const { return ppsIds_; }
    const std::set<int>& spsIdsSeen() const { return spsIds_; }
    /// Whether a sample contained a sequence parameter set that differs from the previous one of its id.
    bool spsChanged() const { return spsChanged_; }

private:
    void takeParameterSet(bitstream::ByteView nal);
    void takePicture(const SliceHeader& slice, PictureFacts& facts);
    void takeSecondField(const SliceHeader& slice, PictureFacts& facts);

    ParameterSets sets_;
    int nalLengthSize_;
    PictureOrder order_;
    int period_ = 0;
    bool started_ = false;
    bool spsChanged_ = false;
    std::set<int> ppsIds_;
    std::set<int> spsIds_;
};

} // namespace zelvra::h264
