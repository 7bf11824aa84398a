// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/FreeId.h"

#include "ZelvraCore/bitstream/BitstreamError.h"

namespace zelvra::bitstream {

int lowestFreeId(const std::set<int>& used, int limit) {
    int id = 0;
    while (used.contains(id)) {
        ++id;
    }
    if (id >= limit) {
        throw BitstreamError::unsupported("the video uses every name that a parameter set can have");
    }
    return id;
}

} // namespace zelvra::bitstream
