// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/ParameterSets.h"

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/h264/NalType.h"

namespace zelvra::h264 {

using bitstream::BitstreamError;

ParameterSets::ParameterSets(const AvcConfiguration& configuration) {
    for (const auto* nals : {&configuration.spsNals, &configuration.ppsNals}) {
        for (const bitstream::Bytes& nal : *nals) {
            add(nal);
        }
    }
}

bool ParameterSets::add(bitstream::ByteView nal) {
    if (nal.empty()) {
        return false;
    }
    if (nalType(nal) == NalType::sps) {
        Sps sps = parseSps(nal);
        sps_.insert_or_assign(sps.id, std::move(sps));
        return true;
    }
    if (nalType(nal) == NalType::pps) {
        Pps pps = parsePps(nal);
        // Only the number of scaling lists depends on the sequence parameter set. If that is not known yet,
        // 4:2:0 is assumed.
        const auto sps = sps_.find(pps.spsId);
        if (pps.scalingMatrixPresent && sps != sps_.end() && sps->second.chroma == ChromaFormat::yuv444) {
            pps = parsePps(nal, ChromaFormat::yuv444);
        }
        pps_.insert_or_assign(pps.id, std::move(pps));
        return true;
    }
    return false;
}

const Sps& ParameterSets::sps(int id) const {
    const auto found = sps_.find(id);
    if (found == sps_.end()) {
        throw BitstreamError::corrupt("a sequence parameter set of the video is missing");
    }
    return found->second;
}

const Pps& ParameterSets::pps(int id) const {
    const auto found = pps_.find(id);
    if (found == pps_.end()) {
        throw BitstreamError::corrupt("a picture parameter set of the video is missing");
    }
    return found->second;
}

} // namespace zelvra::h264
