// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/ScalingLists.h"

namespace zelvra::h264 {

namespace {

void skipScalingList(bitstream::BitReader& reader, int size) {
    std::int64_t last = 8;
    std::int64_t next = 8;
    for (int i = 0; i < size && next != 0; ++i) {
        next = (last + reader.se() + 256) % 256;
        if (next != 0) {
            last = next;
        }
    }
}

} // namespace

void skipScalingLists(bitstream::BitReader& reader, int count) {
    for (int i = 0; i < count; ++i) {
        if (reader.flag()) {
            skipScalingList(reader, i < 6 ? 16 : 64);
        }
    }
}

} // namespace zelvra::h264
