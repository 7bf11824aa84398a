// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitReader.h"

#include "ZelvraCore/bitstream/BitstreamError.h"

#include <algorithm>
#include <bit>

namespace zelvra::bitstream {

namespace {

std::uint32_t lowest(std::uint32_t value, int count) {
    return value & ((1U << count) - 1);
}

} // namespace

void BitReader::fetch() {
    if (zeros_ >= 2 && next_ < bytes_.size() && bytes_[next_] == 3) {
        ++next_;
        zeros_ = 0;
    }
    if (next_ >= bytes_.size()) {
        throw BitstreamError::corrupt("the coded video ends within a header");
    }
    current_ = bytes_[next_++];
    zeros_ = current_ == 0 ? zeros_ + 1 : 0;
    left_ = 8;
}

std::uint32_t BitReader::bits(int count) {
    std::uint64_t value = 0;
    while (count > 0) {
        if (left_ == 0) {
            fetch();
        }
        const int taken = std::min(count, left_);
        left_ -= taken;
        value = value << taken | lowest(static_cast<std::uint32_t>(current_) >> left_, taken);
        count -= taken;
        position_ += static_cast<std::uint64_t>(taken);
    }
    return static_cast<std::uint32_t>(value);
}

std::uint64_t BitReader::longBits(int count) {
    const int low = std::min(count, 32);
    const std::uint64_t high = bits(count - low);
    return high << low | bits(low);
}

std::uint32_t BitReader::ue() {
    int zeros = 0;
    while (!flag()) {
        if (++zeros > 31) {
            throw BitstreamError::corrupt("a number in the coded video's headers is too long");
        }
    }
    return ((1U << zeros) - 1) + bits(zeros);
}

std::uint32_t BitReader::ue(std::uint32_t max) {
    const std::uint32_t value = ue();
    if (value > max) {
        throw BitstreamError::corrupt("a number in the coded video's headers is out of range");
    }
    return value;
}

std::int32_t BitReader::se() {
    const std::uint32_t code = ue();
    const auto magnitude = static_cast<std::int32_t>(code / 2 + code % 2);
    return code % 2 == 1 ? magnitude : -magnitude;
}

void BitReader::skip(std::uint64_t count) {
    while (count > 0) {
        const auto step = static_cast<int>(std::min<std::uint64_t>(count, 32));
        bits(step);
        count -= static_cast<std::uint64_t>(step);
    }
}

void BitReader::skipToByteBoundary() {
    position_ += static_cast<std::uint64_t>(left_);
    left_ = 0;
}

BitReader::Rest BitReader::rest() const {
    Rest rest;
    if (const std::uint32_t unread = lowest(current_, left_); unread != 0) {
        rest.beforeStop = static_cast<std::uint64_t>(left_ - 1 - std::countr_zero(unread));
    }
    rest.all = static_cast<std::uint64_t>(left_);
    int zeros = zeros_;
    for (const std::uint8_t byte : bytes_.subspan(next_)) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        if (byte != 0) {
            rest.beforeStop = rest.all + 7 - static_cast<std::uint64_t>(std::countr_zero(byte));
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        rest.all += 8;
    }
    return rest;
}

bool BitReader::moreData() const {
    return rest().beforeStop.value_or(0) > 0;
}

std::uint64_t BitReader::bitsBeforeStop() const {
    const auto before = rest().beforeStop;
    if (!before) {
        throw BitstreamError::corrupt("a part of the coded video has no end mark");
    }
    return *before;
}

std::uint64_t BitReader::bitsLeft() const {
    return rest().all;
}

} // namespace zelvra::bitstream
