// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/Bytes.h"

#include <cstddef>
#include <string>

namespace zelvra::bitstream {

/// Reads big-endian numbers and runs of bytes from a record. Every read is checked against the record's end.
/// Borrows the bytes.
class ByteCursor {
public:
    /// `name` names the record in the error for a record that ends too early.
    ByteCursor(ByteView bytes, std::string name) : rest_(bytes), name_(std::move(name)) {}

    ByteView take(std::size_t count) {
        if (count > rest_.size()) {
            throw BitstreamError::corrupt("the " + name_ + " ends too early");
        }
        const ByteView taken = rest_.first(count);
        rest_ = rest_.subspan(count);
        return taken;
    }

    std::uint64_t number(std::size_t byteCount) {
        std::uint64_t value = 0;
        for (const std::uint8_t byte : take(byteCount)) {
            value = value << 8 | byte;
        }
        return value;
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(number(1)); }
    std::uint16_t word() { return static_cast<std::uint16_t>(number(2)); }

    ByteView rest() const { return rest_; }

private:
    ByteView rest_;
    std::string name_;
};

inline void appendNumber(Bytes& bytes, std::uint64_t value, int byteCount) {
    bytes.resize(bytes.size() + static_cast<std::size_t>(byteCount));
    for (auto last = bytes.rbegin(); byteCount > 0; --byteCount, value >>= 8) {
        *last++ = static_cast<std::uint8_t>(value);
    }
}

inline void append(Bytes& bytes, ByteView more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace zelvra::bitstream
