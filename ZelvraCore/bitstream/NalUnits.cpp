// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/NalUnits.h"

#include "ZelvraCore/bitstream/ByteCursor.h"

#include <algorithm>

namespace zelvra::bitstream {

namespace {

void requireLengthSize(int lengthSize) {
    if (lengthSize != 1 && lengthSize != 2 && lengthSize != 4) {
        throw BitstreamError::unsupported("the video's samples count the bytes of their parts unusually");
    }
}

} // namespace

std::vector<ByteView> splitNalUnits(ByteView sample, int lengthSize) {
    requireLengthSize(lengthSize);
    std::vector<ByteView> nals;
    ByteCursor cursor(sample, "video sample");
    while (!cursor.rest().empty()) {
        const std::uint64_t length = cursor.number(static_cast<std::size_t>(lengthSize));
        if (const ByteView nal = cursor.take(length); !nal.empty()) {
            nals.push_back(nal);
        }
    }
    return nals;
}

NalUnitWalk::NalUnitWalk(ByteView bytes, int lengthSize)
    : rest_(lengthSize >= 1 && lengthSize <= 4 ? bytes : ByteView()),
      lengthSize_(static_cast<std::size_t>(lengthSize)) {}

std::optional<ByteView> NalUnitWalk::next() {
    while (rest_.size() > lengthSize_) {
        std::size_t length = 0;
        for (const std::uint8_t byte : rest_.first(lengthSize_)) {
            length = length << 8 | byte;
        }
        rest_ = rest_.subspan(lengthSize_);
        const ByteView nal = rest_.first(std::min(length, rest_.size()));
        rest_ = rest_.subspan(nal.size());
        if (!nal.empty()) {
            return nal;
        }
    }
    return std::nullopt;
}

void appendNalUnit(Bytes& sample, ByteView nal, int lengthSize) {
    requireLengthSize(lengthSize);
    if (std::uint64_t{nal.size()} >> (8 * lengthSize) != 0) {
        throw BitstreamError::unsupported("a part of the coded video is too long for the video's samples");
    }
    appendNumber(sample, nal.size(), lengthSize);
    append(sample, nal);
}

} // namespace zelvra::bitstream
