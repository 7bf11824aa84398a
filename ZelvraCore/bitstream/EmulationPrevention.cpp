// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/EmulationPrevention.h"

namespace zelvra::bitstream {

void appendWithEmulationPrevention(Bytes& nal, ByteView payload) {
    nal.reserve(nal.size() + payload.size() + payload.size() / 256 + 1);
    int zeros = 0;
    for (const std::uint8_t byte : payload) {
        if (zeros >= 2 && byte <= 3) {
            nal.push_back(3);
            zeros = 0;
        }
        nal.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    if (zeros > 0) {
        nal.push_back(3);
    }
}

Bytes withEmulationPrevention(ByteView header, ByteView payload) {
    Bytes nal(header.begin(), header.end());
    appendWithEmulationPrevention(nal, payload);
    return nal;
}

Bytes withoutEmulationPrevention(ByteView escaped) {
    Bytes payload;
    payload.reserve(escaped.size());
    int zeros = 0;
    for (const std::uint8_t byte : escaped) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        payload.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return payload;
}

} // namespace zelvra::bitstream
