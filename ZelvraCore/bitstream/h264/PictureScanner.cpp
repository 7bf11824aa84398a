// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/PictureScanner.h"

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/h264/SmallNals.h"

#include <algorithm>

namespace zelvra::h264 {

using bitstream::BitstreamError;

PictureScanner::PictureScanner(ParameterSets sets, int nalLengthSize)
    : sets_(std::move(sets)),
      nalLengthSize_(nalLengthSize),
      ppsIds_(bitstream::idsOf(sets_.allPps())),
      spsIds_(bitstream::idsOf(sets_.allSps())) {}

PictureFacts PictureScanner::scan(bitstream::ByteView sample) {
    PictureFacts facts;
    std::optional<SliceHeader> first;
    bool bothFields = false;
    for (const bitstream::ByteView nal : bitstream::splitNalUnits(sample, nalLengthSize_)) {
        const NalType type = nalType(nal);
        if (type == NalType::sps || type == NalType::pps) {
            takeParameterSet(nal);
            facts.hasInBandParameterSets = true;
        } else if (type == NalType::accessUnitDelimiter) {
            facts.hasAccessUnitDelimiter = true;
        } else if (type == NalType::sei && !facts.recoveryFrameCount) {
            facts.recoveryFrameCount = recoveryFrameCount(nal);
        } else if (isSlice(type)) {
            ++facts.slices;
            if (!first) {
                first = parseSliceHeader(nal, sets_);
                takePicture(*first, facts);
            } else if (first->fieldPicture && !bothFields) {
                const SliceHeader slice = parseSliceHeader(nal, sets_);
                bothFields = slice.bottomField != first->bottomField;
                if (bothFields) {
                    takeSecondField(slice, facts);
                }
            }
        }
    }
    if (!first) {
        throw BitstreamError::corrupt("a sample of the video holds no picture");
    }
    facts.orderAfter = order_;
    return facts;
}

void PictureScanner::takeParameterSet(bitstream::ByteView nal) {
    if (nalType(nal) == NalType::sps) {
        const Sps sps = parseSps(nal);
        const auto known = sets_.allSps().find(sps.id);
        spsChanged_ = spsChanged_ || (known != sets_.allSps().end() && known->second.nal != sps.nal);
        spsIds_.insert(sps.id);
    } else {
        ppsIds_.insert(parsePps(nal).id);
    }
    sets_.add(nal);
}

void PictureScanner::takePicture(const SliceHeader& slice, PictureFacts& facts) {
    const Sps& sps = sets_.sps(slice.spsId);
    const std::uint32_t before = order_.previousReferenceFrameNum();
    facts.frameNumGap = started_ && !slice.idr && slice.frameNum != before &&
                        slice.frameNum != (before + 1) % (1U << sps.frameNumBits);
    facts.idr = slice.idr;
    facts.isReference = slice.isReference();
    facts.fieldPicture = slice.fieldPicture;
    facts.resetsMemory = slice.resetsMemory();
    facts.type = slice.type;
    facts.spsId = slice.spsId;
    facts.ppsId = slice.ppsId;
    facts.idrPicId = slice.idrPicId;
    facts.frameNum = slice.frameNum;
    facts.pocLsb = slice.pocLsb;
    facts.poc = order_.next(sps, slice);
    if (started_ && (slice.idr || facts.resetsMemory)) {
        ++period_;
    }
    facts.period = period_;
    started_ = true;
}

void PictureScanner::takeSecondField(const SliceHeader& slice, PictureFacts& facts) {
    const std::int64_t poc = order_.next(sets_.sps(slice.spsId), slice);
    facts.isReference = facts.isReference || slice.isReference();
    if (slice.resetsMemory() && !facts.resetsMemory) {
        facts.resetsMemory = true;
        facts.period = ++period_;
        facts.poc = poc;
    }
    facts.poc = std::min(facts.poc, poc);
}

} // namespace zelvra::h264
