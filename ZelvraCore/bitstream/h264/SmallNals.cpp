// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/SmallNals.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/SeiMessages.h"
#include "ZelvraCore/bitstream/h264/NalType.h"

#include <array>

namespace zelvra::h264 {

namespace {

constexpr std::uint32_t recoveryPoint = 6;

} // namespace

bitstream::Bytes accessUnitDelimiter() {
    constexpr std::uint8_t intraOnlyAndStopBit = 0x10;
    return {static_cast<std::uint8_t>(NalType::accessUnitDelimiter), intraOnlyAndStopBit};
}

bitstream::Bytes recoveryPointSei(std::uint32_t frameCount) {
    bitstream::BitWriter payload;
    payload.ue(frameCount);
    payload.flag(true);  // exact_match_flag
    payload.flag(false); // broken_link_flag
    payload.bits(0, 2);  // changing_slice_group_idc
    if (!payload.byteAligned()) {
        payload.trailingBits();
    }
    constexpr std::array header{static_cast<std::uint8_t>(NalType::sei)};
    return bitstream::writeSei(header, {{recoveryPoint, payload.payload()}});
}

std::optional<std::uint32_t> recoveryFrameCount(bitstream::ByteView seiNal) {
    for (const auto& message : bitstream::parseSeiMessages(seiNal.subspan(1))) {
        if (message.type != recoveryPoint) {
            continue;
        }
        try {
            return bitstream::BitReader(message.payload).ue();
        } catch (const bitstream::BitstreamError&) {
            return std::nullopt; // messages are optional, so a malformed one counts as absent
        }
    }
    return std::nullopt;
}

} // namespace zelvra::h264
