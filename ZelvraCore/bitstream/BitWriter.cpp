// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitWriter.h"

#include <algorithm>
#include <bit>

namespace zelvra::bitstream {

void BitWriter::bits(std::uint32_t value, int count) {
    while (count > 0) {
        if (free_ == 0) {
            payload_.push_back(0);
            free_ = 8;
        }
        const int taken = std::min(count, free_);
        const std::uint32_t part = value >> (count - taken) & ((1U << taken) - 1);
        free_ -= taken;
        count -= taken;
        payload_.back() = static_cast<std::uint8_t>(payload_.back() | part << free_);
    }
}

void BitWriter::ue(std::uint32_t value) {
    const std::uint64_t code = std::uint64_t{value} + 1;
    const int length = std::bit_width(code);
    bits(0, length - 1);
    flag(true);
    bits(static_cast<std::uint32_t>(code), length - 1);
}

void BitWriter::se(std::int32_t value) {
    const auto magnitude = static_cast<std::uint32_t>(value < 0 ? -std::int64_t{value} : value);
    ue(value > 0 ? magnitude * 2 - 1 : magnitude * 2);
}

void BitWriter::copy(BitReader& from, std::uint64_t count) {
    while (count > 0) {
        const auto step = static_cast<int>(std::min<std::uint64_t>(count, 32));
        bits(from.bits(step), step);
        count -= static_cast<std::uint64_t>(step);
    }
}

void BitWriter::trailingBits() {
    flag(true);
    free_ = 0;
}

void BitWriter::alignWithOnes() {
    bits(0xFF, free_);
}

} // namespace zelvra::bitstream
