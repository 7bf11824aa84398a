// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <set>

namespace zelvra::bitstream {

/// The lowest parameter set id below `limit` that is not in use. Throws BitstreamError (unsupported) if all
/// are in use. Limits: H.264 32 sequence and 256 picture sets, HEVC 16 video, 16 sequence and 64 picture
/// sets.
int lowestFreeId(const std::set<int>& used, int limit);

template <class Set>
std::set<int> idsOf(const std::map<int, Set>& sets) {
    std::set<int> ids;
    for (const auto& [id, set] : sets) {
        ids.insert(id);
    }
    return ids;
}

} // namespace zelvra::bitstream
