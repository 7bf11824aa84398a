// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/SeiMessages.h"

#include "ZelvraCore/bitstream/ByteCursor.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"

#include <optional>

namespace zelvra::bitstream {

namespace {

constexpr std::uint8_t stopByte = 0x80;

/// Type and size are each coded as bytes that are added up: a run of 255s, then a last byte.
std::optional<std::uint32_t> takeSum(ByteView& rest) {
    std::uint32_t sum = 0;
    while (!rest.empty()) {
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        sum += byte;
        if (byte != 0xFF) {
            return sum;
        }
    }
    return std::nullopt;
}

void appendSum(Bytes& bytes, std::size_t sum) {
    for (; sum >= 0xFF; sum -= 0xFF) {
        bytes.push_back(0xFF);
    }
    bytes.push_back(static_cast<std::uint8_t>(sum));
}

} // namespace

std::vector<SeiMessage> parseSeiMessages(ByteView escaped) {
    const Bytes all = withoutEmulationPrevention(escaped);
    std::vector<SeiMessage> messages;
    ByteView rest = all;
    while (rest.size() > 1) { // the last byte contains at least the closing bits
        const auto type = takeSum(rest);
        const auto size = takeSum(rest);
        if (!type || !size || *size > rest.size()) {
            break;
        }
        messages.push_back({*type, Bytes(rest.begin(), rest.begin() + *size)});
        rest = rest.subspan(*size);
    }
    return messages;
}

Bytes writeSei(ByteView header, const std::vector<SeiMessage>& messages) {
    Bytes payload;
    for (const SeiMessage& message : messages) {
        appendSum(payload, message.type);
        appendSum(payload, message.payload.size());
        append(payload, message.payload);
    }
    payload.push_back(stopByte);
    return withEmulationPrevention(header, payload);
}

} // namespace zelvra::bitstream
