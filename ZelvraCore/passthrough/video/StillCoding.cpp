// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillCoding.h"

namespace zelvra::passthrough {

const StillCoding& StillCodings::of(const PlannedSample& still) const {
    using Kind = PlannedSample::Kind;
    switch (still.kind) {
    case Kind::leadIn: return *leadIn;
    case Kind::cover: return *cover;
    case Kind::leadOut: return *leadOut;
    default: return freezes[still.index];
    }
}

StillCoding idrCoding(const h264::Sps& sps, const std::set<std::uint32_t>& taken) {
    StillCoding coding{.sps = sps, .repeatsSps = false, .headers = {}, .takesTurns = true};
    for (std::uint32_t id = 0; coding.headers.size() < 2; ++id) {
        if (!taken.contains(id)) {
            h264::StillHeader& header = coding.headers.emplace_back();
            header.idr = true;
            header.nalRefIdc = 3;
            header.idrPicId = id;
        }
    }
    return coding;
}

std::set<std::uint32_t> idrPicIdsOf(const StillCoding& coding) {
    std::set<std::uint32_t> ids;
    for (const h264::StillHeader& header : coding.headers) {
        ids.insert(header.idrPicId);
    }
    return ids;
}

} // namespace zelvra::passthrough
