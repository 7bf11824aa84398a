// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/PictureOrder.h"

#include <set>

namespace zelvra::h264 {

/// What the plan of a passthrough movie needs to know of one coded picture.
struct PictureFacts {
    bool idr = false;
    bool isReference = false;
    bool fieldPicture = false;           ///< coded as one or two fields
    bool hasInBandParameterSets = false; ///< the sample carries sequence or picture parameter sets
    bool hasAccessUnitDelimiter = false;
    bool resetsMemory = false;     ///< memory_management_control_operation 5
    bool frameNumGap = false;      ///< frames are missing before it, by frame_num
    SliceType type = SliceType::i; ///< of its first slice
    int slices = 0;                ///< slice NAL units in the sample
    int spsId = 0;
    int ppsId = 0;
    std::uint32_t idrPicId = 0;
    std::uint32_t frameNum = 0;
    std::uint32_t pocLsb = 0; ///< pic_order_cnt_lsb as coded (POC type 0)
    /// Output order is by (period, poc): the period counts IDR pictures and memory resets since the scan
    /// began.
    std::int64_t poc = 0;
    int period = 0;
    std::optional<std::uint32_t> recoveryFrameCount; ///< of a recovery point message in the sample
    PictureOrder orderAfter; ///< copy it and ask for the order of a picture put behind this one
};

/// Reads the facts of pictures, sample by sample in decode order, beginning at any sync sample. Only the
/// header of a picture's first slice is read (of both fields where it is coded in fields), and parameter sets
/// and supplemental messages on the way.
class PictureScanner {
public:
    /// `sets` are those of the sample entry, `nalLengthSize` its record's.
    PictureScanner(ParameterSets sets, int nalLengthSize);

    /// Throws BitstreamError: also where the sample holds no slice.
    PictureFacts scan(bitstream::ByteView sample);

    /// Parameter sets in force after the last sample.
    const ParameterSets& parameterSets() const { return sets_; }
    /// Ids seen so far, in the sample entry or in samples: those that our own sets must not have.
    const std::set<int>& ppsIdsSeen() const { return ppsIds_; }
    const std::set<int>& spsIdsSeen() const { return spsIds_; }
    /// Whether a sample brought a sequence parameter set that differs from the one of its id before.
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
