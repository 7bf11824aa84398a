// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/SliceHeader.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitstreamError.h"

#include <algorithm>

namespace zelvra::h264 {

using bitstream::BitReader;
using bitstream::BitstreamError;

namespace {

/// Limit for list modifications and for memory operations: the number of fields that a buffer holds, and an
/// end mark.
constexpr int maxOperations = 66;

bool isB(SliceType type) {
    return type == SliceType::b;
}
bool isIntra(SliceType type) {
    return type == SliceType::i || type == SliceType::si;
}
int listCount(SliceType type) {
    if (isIntra(type)) {
        return 0;
    }
    return isB(type) ? 2 : 1;
}

class Parser {
public:
    Parser(bitstream::ByteView nal, const ParameterSets& sets) : reader_(nal.subspan(1)), sets_(sets) {
        header_.idr = nalType(nal) == NalType::idrSlice;
        header_.nalRefIdc = nalRefIdc(nal);
    }

    SliceHeader parse() {
        parseIdentity();
        const Pps& pps = sets_.pps(header_.ppsId);
        const Sps& sps = sets_.sps(pps.spsId);
        header_.spsId = sps.id;
        parsePlace(sps, pps);
        parseReferences(sps, pps);
        if (header_.isReference()) {
            parseMarking();
        }
        parseQuantisation(pps);
        header_.headerBits = reader_.position();
        return std::move(header_);
    }

private:
    void parseIdentity() {
        header_.firstMacroblock = reader_.ue();
        const std::uint32_t type = reader_.ue(9);
        header_.type = static_cast<SliceType>(type % 5);
        header_.sameTypeInPicture = type >= 5;
        header_.ppsId = static_cast<int>(reader_.ue(255));
    }

    void parsePlace(const Sps& sps, const Pps& pps) {
        if (sps.separateColourPlanes) {
            reader_.skip(2);
        }
        header_.frameNum = reader_.bits(sps.frameNumBits);
        if (!sps.frameMbsOnly) {
            header_.fieldPicture = reader_.flag();
            header_.bottomField = header_.fieldPicture && reader_.flag();
        }
        if (header_.idr) {
            header_.idrPicId = reader_.ue(0xFFFF);
        }
        const bool bothFields = pps.bottomFieldPicOrderPresent && !header_.fieldPicture;
        if (sps.pocType == 0) {
            header_.pocLsb = reader_.bits(sps.pocLsbBits);
            if (bothFields) {
                header_.deltaPocBottom = reader_.se();
            }
        } else if (sps.pocType == 1 && !sps.deltaPicOrderAlwaysZero) {
            header_.deltaPoc[0] = reader_.se();
            if (bothFields) {
                header_.deltaPoc[1] = reader_.se();
            }
        }
        if (pps.redundantPicCntPresent) {
            header_.redundantPicCnt = reader_.ue(127);
        }
    }

    void parseReferences(const Sps& sps, const Pps& pps) {
        const SliceType type = header_.type;
        if (isB(type)) {
            reader_.skip(1); // direct_spatial_mv_pred_flag
        }
        const int lists = listCount(type);
        const bool overridden = lists > 0 && reader_.flag();
        for (int list = 0; list < lists; ++list) {
            const auto index = static_cast<std::size_t>(list);
            header_.activeRefs[index] =
                overridden ? reader_.ue(31) + 1 : static_cast<std::uint32_t>(pps.defaultActiveRefs[index]);
        }
        for (int list = 0; list < lists; ++list) {
            skipListModification();
        }
        const bool weighted = isB(type) ? pps.weightedBipredictionIdc == 1 : pps.weightedPrediction;
        if (weighted && lists > 0) {
            skipWeights(sps, lists);
        }
    }

    void skipListModification() {
        constexpr std::uint32_t end = 3;
        if (!reader_.flag()) {
            return;
        }
        for (int i = 0; i <= maxOperations; ++i) {
            if (reader_.ue(end) == end) {
                return;
            }
            reader_.ue();
        }
        throw BitstreamError::corrupt("a picture changes its list of references too often");
    }

    void skipWeights(const Sps& sps, int lists) {
        const bool chroma = !sps.separateColourPlanes && sps.chroma != ChromaFormat::monochrome;
        reader_.ue(7);
        if (chroma) {
            reader_.ue(7);
        }
        for (int list = 0; list < lists; ++list) {
            for (std::uint32_t i = 0; i < header_.activeRefs[static_cast<std::size_t>(list)]; ++i) {
                skipPairs(1);
                if (chroma) {
                    skipPairs(2);
                }
            }
        }
    }

    /// Skips a flag and, if it is set, weight and offset of each plane.
    void skipPairs(int planes) {
        if (!reader_.flag()) {
            return;
        }
        for (int i = 0; i < planes * 2; ++i) {
            reader_.se();
        }
    }

    void parseMarking() {
        if (header_.idr) {
            header_.noOutputOfPriorPics = reader_.flag();
            header_.longTermReference = reader_.flag();
            return;
        }
        if (!reader_.flag()) {
            return;
        }
        for (int i = 0; i <= maxOperations; ++i) {
            MemoryOperation operation;
            operation.operation = static_cast<int>(reader_.ue(6));
            if (operation.operation == 0) {
                return;
            }
            if (operation.operation != 5) {
                operation.first = reader_.ue();
            }
            if (operation.operation == 3) {
                operation.second = reader_.ue();
            }
            header_.memoryOperations.push_back(operation);
        }
        throw BitstreamError::corrupt("a picture changes the memory of references too often");
    }

    void parseQuantisation(const Pps& pps) {
        const SliceType type = header_.type;
        if (pps.cabac && !isIntra(type)) {
            reader_.ue(2); // cabac_init_idc
        }
        header_.qpDelta = reader_.se();
        if (type == SliceType::sp) {
            reader_.skip(1);
        }
        if (type == SliceType::sp || type == SliceType::si) {
            reader_.se();
        }
        if (!pps.deblockingControlPresent) {
            return;
        }
        header_.deblocking.emplace();
        header_.deblocking->disableIdc = reader_.ue(2);
        if (header_.deblocking->disableIdc != 1) {
            header_.deblocking->alphaOffsetDiv2 = reader_.se();
            header_.deblocking->betaOffsetDiv2 = reader_.se();
        }
    }

    BitReader reader_;
    const ParameterSets& sets_;
    SliceHeader header_;
};

} // namespace

bool SliceHeader::resetsMemory() const {
    return std::ranges::any_of(memoryOperations, [](const auto& each) { return each.operation == 5; });
}

SliceHeader parseSliceHeader(bitstream::ByteView nal, const ParameterSets& sets) {
    if (nal.empty()) {
        throw BitstreamError::corrupt("a slice of the video is empty");
    }
    const NalType type = nalType(nal);
    if (type >= NalType::partitionA && type <= NalType::partitionC) {
        throw BitstreamError::unsupported("the video's slices are partitioned");
    }
    if (type != NalType::slice && type != NalType::idrSlice) {
        throw BitstreamError::unsupported("the video has more than one layer");
    }
    return Parser(nal, sets).parse();
}

} // namespace zelvra::h264
