// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/HexText.h"

#include <charconv>

namespace zelvra {

namespace {

constexpr std::string_view digits = "0123456789abcdefABCDEF";

} // namespace

std::string hexText(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> bytesOfHexText(std::string_view text) {
    if (text.size() % 2 != 0 || text.find_first_not_of(digits) != std::string_view::npos) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::from_chars(text.data() + 2 * i, text.data() + 2 * i + 2, bytes[i], 16);
    }
    return bytes;
}

} // namespace zelvra
