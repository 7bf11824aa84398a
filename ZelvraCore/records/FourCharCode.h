// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>

namespace zelvra {

/// Four characters packed into a number, the first in the most significant byte ("avc1" is 0x61766331).
using FourCharCode = std::uint32_t;

constexpr FourCharCode fourCharCode(const char (&text)[5]) {
    FourCharCode code = 0;
    for (int i = 0; i < 4; ++i) {
        code = code << 8 | static_cast<unsigned char>(text[i]);
    }
    return code;
}

/// The four bytes as characters, most significant first.
inline std::string fourCharString(FourCharCode code) {
    return {static_cast<char>(code >> 24), static_cast<char>(code >> 16), static_cast<char>(code >> 8),
            static_cast<char>(code)};
}

} // namespace zelvra
