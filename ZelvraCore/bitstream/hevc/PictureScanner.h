// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/PictureOrder.h"

#include <set>

namespace zelvra::hevc {

/// The facts about one coded picture that the planner of a passthrough movie needs.
struct PictureFacts {
    NalType nalType = NalType::trailN;
    bool irap = false;
    bool idr = false;
    bool leading = false; ///< RASL or RADL: decoded after its IRAP picture, shown before it
    bool subLayerNonReference = false;
    int temporalId = 0;
    /// Whether decoders output it: pic_output_flag is set, and it is not a RASL picture whose IRAP picture
    /// starts a sequence.
    bool output = true;
    bool startsSequence = false; ///< IRAP with NoRaslOutputFlag = 1
    bool hasInBandParameterSets = false;
    bool hasAccessUnitDelimiter = false;
    SliceType type = SliceType::i; ///< of its first slice
    int slices = 0;                ///< number of slice segment NAL units in the sample
    int spsId = 0;
    int ppsId = 0;
    /// Output order is by (period, poc). The period counts the pictures that start a sequence.
    std::int64_t poc = 0;
    int period = 0;
};

/// Reads the facts of pictures, sample by sample in decode order, beginning at any sync sample. Reads only
/// parameter sets and the header of a picture's first slice segment.
class PictureScanner {
public:
    /// `sets` are those of the sample entry, `nalLengthSize` is that of its record.
    PictureScanner(ParameterSets sets, int nalLengthSize);

    /// Throws BitstreamError, also if the sample contains no slice, or slices of several layers.
    PictureFacts scan(bitstream::ByteView sample);

    /// Parameter sets in force after the last sample.
    const ParameterSets& parameterSets() const { return sets_; }
    /// Ids seen so far, in the sample entry or in samples. New sets must not use them.
    const std::set<int>& vpsIdsSeen() const { return vpsIds_; }
    const std::set<int>& spsIdsSeen() const { return spsIds_; }
    const std::set<int>& ppsIdsSeen() const { return ppsIds_; }
    /// Whether a sample contained a sequence parameter set that differs from the previous one of its id.
    bool spsChanged() const { return spsChanged_; }

private:
    void takeParameterSet(bitstream::ByteView nal);
    void takePicture(const SliceHeader& slice, PictureFacts& facts);

    ParameterSets sets_;
    int nalLengthSize_;
    PictureOrder order_;
    int period_ = 0;
    bool sequenceStarts_ = true;     ///< the next IRAP picture starts a sequence whatever its type
    bool headStartsSequence_ = true; ///< whether the last IRAP picture in decode order did
    bool started_ = false;
    bool spsChanged_ = false;
    std::set<int> vpsIds_;
    std::set<int> spsIds_;
    std::set<int> ppsIds_;
};

} // namespace zelvra::hevc
