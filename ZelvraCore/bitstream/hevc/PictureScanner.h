// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/PictureOrder.h"

#include <set>

namespace zelvra::hevc {

/// What the plan of a passthrough movie needs to know of one coded picture.
struct PictureFacts {
    NalType nalType = NalType::trailN;
    bool irap = false;
    bool idr = false;
    bool leading = false; ///< RASL or RADL: decoded after its IRAP picture, shown before
    bool subLayerNonReference = false;
    int temporalId = 0;
    /// Whether decoders give it out: pic_output_flag, and not a RASL picture whose head starts a sequence.
    bool output = true;
    bool startsSequence = false; ///< IRAP with NoRaslOutputFlag = 1
    bool hasInBandParameterSets = false;
    bool hasAccessUnitDelimiter = false;
    SliceType type = SliceType::i; ///< of its first slice
    int slices = 0;                ///< slice segment NAL units in the sample
    int spsId = 0;
    int ppsId = 0;
    /// Output order is by (period, poc): the period counts the pictures that start a sequence.
    std::int64_t poc = 0;
    int period = 0;
};

/// Reads the facts of pictures, sample by sample in decode order, beginning at any sync sample. Only the
/// header of a picture's first slice segment is read, and parameter sets on the way.
class PictureScanner {
public:
    /// `sets` are those of the sample entry, `nalLengthSize` its record's.
    PictureScanner(ParameterSets sets, int nalLengthSize);

    /// Throws BitstreamError: also where the sample holds no slice, or slices of several layers.
    PictureFacts scan(bitstream::ByteView sample);

    /// Parameter sets in force after the last sample.
    const ParameterSets& parameterSets() const { return sets_; }
    /// Ids seen so far, in the sample entry or in samples: those that our own sets must not have.
    const std::set<int>& vpsIdsSeen() const { return vpsIds_; }
    const std::set<int>& spsIdsSeen() const { return spsIds_; }
    const std::set<int>& ppsIdsSeen() const { return ppsIds_; }
    /// Whether a sample brought a sequence parameter set that differs from the one of its id before.
    bool spsChanged() const { return spsChanged_; }

private:
    void takeParameterSet(bitstream::ByteView nal);
    void takePicture(const SliceHeader& slice, PictureFacts& facts);

    ParameterSets sets_;
    int nalLengthSize_;
    PictureOrder order_;
    int period_ = 0;
    bool sequenceStarts_ = true;     ///< the next IRAP picture starts a sequence whatever its type
    bool headStartsSequence_ = true; ///< of the IRAP picture before in decode order
    bool started_ = false;
    bool spsChanged_ = false;
    std::set<int> vpsIds_;
    std::set<int> spsIds_;
    std::set<int> ppsIds_;
};

} // namespace zelvra::hevc
