// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/ParameterSets.h"

#include "ZelvraCore/bitstream/BitstreamError.h"

namespace zelvra::hevc {

using bitstream::BitstreamError;

namespace {

template <class Set>
const Set& find(const std::map<int, Set>& sets, int id) {
    const auto found = sets.find(id);
    if (found == sets.end()) {
        throw BitstreamError::corrupt("a parameter set of the video is missing");
    }
    return found->second;
}

} // namespace

ParameterSets::ParameterSets(const HevcConfiguration& configuration) {
    for (const auto& array : configuration.arrays) {
        for (const bitstream::Bytes& nal : array.nals) {
            add(nal);
        }
    }
}

bool ParameterSets::add(bitstream::ByteView nal) {
    if (nal.size() < nalHeaderSize) {
        return false;
    }
    switch (nalType(nal)) {
    case NalType::vps: {
        Vps vps = parseVps(nal);
        vps_.insert_or_assign(vps.id, std::move(vps));
        return true;
    }
    case NalType::sps: {
        Sps sps = parseSps(nal);
        sps_.insert_or_assign(sps.id, std::move(sps));
        return true;
    }
    case NalType::pps: {
        Pps pps = parsePps(nal);
        pps_.insert_or_assign(pps.id, std::move(pps));
        return true;
    }
    default: return false;
    }
}

const Sps& ParameterSets::sps(int id) const {
    return find(sps_, id);
}

const Pps& ParameterSets::pps(int id) const {
    return find(pps_, id);
}

} // namespace zelvra::hevc
