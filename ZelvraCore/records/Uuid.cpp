// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/Uuid.h"

#include "ZelvraCore/records/HexText.h"

#include <random>

namespace zelvra {

namespace {

bool hyphenPrecedes(std::size_t byte) {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

} // namespace

Uuid Uuid::random() {
    thread_local std::random_device device;
    Uuid uuid;
    for (std::size_t i = 0; i < uuid.bytes.size(); i += 4) {
        const std::uint32_t word = device();
        for (std::size_t k = 0; k < 4; ++k) {
            uuid.bytes[i + k] = static_cast<std::uint8_t>(word >> (8 * k));
        }
    }
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | 0x40); // version 4
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80); // variant of RFC 4122
    return uuid;
}

std::string Uuid::text() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (hyphenPrecedes(i)) {
            text += '-';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

std::optional<Uuid> Uuid::fromText(std::string_view text) {
    Uuid uuid;
    for (std::size_t i = 0; i < uuid.bytes.size(); ++i) {
        if (hyphenPrecedes(i)) {
            if (!text.starts_with('-')) {
                return std::nullopt;
            }
            text.remove_prefix(1);
        }
        const auto byte = bytesOfHexText(text.substr(0, 2));
        if (!byte || byte->size() != 1) {
            return std::nullopt;
        }
        uuid.bytes[i] = byte->front();
        text.remove_prefix(2);
    }
    return text.empty() ? std::optional(uuid) : std::nullopt;
}

} // namespace zelvra
