// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/Geometry.h"

#include <cstdint>
#include <optional>
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

/// What a probe found out about a movie. Times are on the movie's presentation timeline (edit lists applied).
struct SourceInfo {
    Size naturalSize;                   ///< before rotation, in square pixels
    Size displaySize;                   ///< as displayed, after rotation
    AffineTransform preferredTransform; ///< of the first video track
    CMTime duration;                    ///< of the whole movie
    float nominalFrameRate = 0;         ///< frames a second; 0 where unknown
    CMTime frameDuration;               ///< length of one frame
    bool hasAudio = false;
    std::optional<FourCharCode> videoCodec; ///< of the first sample entry, for example "avc1" or "hvc1"
};

} // namespace zelvra
