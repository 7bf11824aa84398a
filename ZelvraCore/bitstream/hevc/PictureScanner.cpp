// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/PictureScanner.h"

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"

namespace zelvra::hevc {

using bitstream::BitstreamError;

PictureScanner::PictureScanner(ParameterSets sets, int nalLengthSize)
    : sets_(std::move(sets)),
      nalLengthSize_(nalLengthSize),
      vpsIds_(bitstream::idsOf(sets_.allVps())),
      spsIds_(bitstream::idsOf(sets_.allSps())),
      ppsIds_(bitstream::idsOf(sets_.allPps())) {}

PictureFacts PictureScanner::scan(bitstream::ByteView sample) {
    PictureFacts facts;
    bool sequenceEnds = false;
    for (const bitstream::ByteView nal : bitstream::splitNalUnits(sample, nalLengthSize_)) {
        if (nal.size() < nalHeaderSize) {
            continue;
        }
        const NalType type = nalType(nal);
        if (isParameterSet(type)) {
            takeParameterSet(nal);
            facts.hasInBandParameterSets = true;
        } else if (type == NalType::accessUnitDelimiter) {
            facts.hasAccessUnitDelimiter = true;
        } else if (type == NalType::endOfSequence || type == NalType::endOfBitstream) {
            sequenceEnds = true;
        } else if (isSlice(type)) {
            if (layerId(nal) != 0) {
                throw BitstreamError::unsupported("the video has more than one layer");
            }
            if (facts.slices++ == 0) {
                takePicture(parseSliceHeader(nal, sets_), facts);
            }
        }
    }
    if (facts.slices == 0) {
        throw BitstreamError::corrupt("a sample of the video holds no picture");
    }
    sequenceStarts_ = sequenceEnds;
    started_ = true;
    return facts;
}

void PictureScanner::takeParameterSet(bitstream::ByteView nal) {
    if (nalType(nal) == NalType::sps) {
        const Sps sps = parseSps(nal);
        const auto known = sets_.allSps().find(sps.id);
        spsChanged_ = spsChanged_ || (known != sets_.allSps().end() && known->second.nal != sps.nal);
        spsIds_.insert(sps.id);
    } else if (nalType(nal) == NalType::pps) {
        ppsIds_.insert(parsePps(nal).id);
    } else {
        vpsIds_.insert(parseVps(nal).id);
    }
    sets_.add(nal);
}

void PictureScanner::takePicture(const SliceHeader& slice, PictureFacts& facts) {
    const Sps& sps = sets_.spsOfPps(slice.ppsId);
    const NalType type = slice.nalType;
    facts.nalType = type;
    facts.irap = isIrap(type);
    facts.idr = isIdr(type);
    facts.leading = isLeading(type);
    facts.subLayerNonReference = isSubLayerNonReference(type);
    facts.temporalId = slice.temporalId;
    facts.startsSequence = facts.irap && (facts.idr || isBla(type) || sequenceStarts_);
    facts.type = slice.type;
    facts.spsId = sps.id;
    facts.ppsId = slice.ppsId;
    facts.poc = order_.next(sps, slice, facts.startsSequence);
    if (facts.irap) {
        headStartsSequence_ = facts.startsSequence;
    }
    facts.output = slice.picOutput && !(isRasl(type) && headStartsSequence_);
    if (started_ && facts.startsSequence) {
        ++period_;
    }
    facts.period = period_;
}

} // namespace zelvra::hevc
