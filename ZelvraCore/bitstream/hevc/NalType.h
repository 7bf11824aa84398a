// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::hevc {

/// The nal_unit_type values that are handled here (ITU-T H.265 table 7-1); streams contain others too.
enum class NalType : std::uint8_t {
    trailN = 0,
    trailR = 1,
    radlN = 6,
    radlR = 7,
    raslN = 8,
    raslR = 9,
    blaWLp = 16,
    blaWRadl = 17,
    blaNLp = 18,
    idrWRadl = 19,
    idrNLp = 20,
    cra = 21,
    vps = 32,
    sps = 33,
    pps = 34,
    accessUnitDelimiter = 35,
    endOfSequence = 36,
    endOfBitstream = 37,
    fillerData = 38,
    prefixSei = 39,
    suffixSei = 40,
    dolbyVisionRpu = 62, ///< unspecified in the standard; carries the picture's Dolby Vision metadata
};

constexpr std::size_t nalHeaderSize = 2;

/// Requires a NAL unit of at least `nalHeaderSize` bytes.
inline NalType nalType(bitstream::ByteView nal) {
    return static_cast<NalType>(nal[0] >> 1 & 0x3F);
}
inline int layerId(bitstream::ByteView nal) {
    return (nal[0] & 1) << 5 | nal[1] >> 3;
}
inline int temporalId(bitstream::ByteView nal) {
    return (nal[1] & 7) - 1;
}

/// Whether it is a slice segment: all types below 32, reserved ones included.
constexpr bool isSlice(NalType type) {
    return type < NalType::vps;
}
constexpr bool isIrap(NalType type) {
    return type >= NalType::blaWLp && static_cast<int>(type) <= 23;
}
constexpr bool isIdr(NalType type) {
    return type == NalType::idrWRadl || type == NalType::idrNLp;
}
constexpr bool isBla(NalType type) {
    return type >= NalType::blaWLp && type <= NalType::blaNLp;
}
constexpr bool isRasl(NalType type) {
    return type == NalType::raslN || type == NalType::raslR;
}
constexpr bool isLeading(NalType type) {
    return isRasl(type) || type == NalType::radlN || type == NalType::radlR;
}
/// Pictures that no other picture of the same temporal sub-layer refers to: the even types below 16.
constexpr bool isSubLayerNonReference(NalType type) {
    return type < NalType::blaWLp && static_cast<int>(type) % 2 == 0;
}
constexpr bool isParameterSet(NalType type) {
    return type >= NalType::vps && type <= NalType::pps;
}

} // namespace zelvra::hevc
