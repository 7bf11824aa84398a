// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/FourCharCode.h"
#include "ZelvraCore/records/Geometry.h"

#include <optional>

namespace zelvra {

/// What a probe found out about a movie. Times are on the movie's presentation timeline (edit lists applied).
struct SourceInfo {
    Size naturalSize;                   ///< before rotation, in square pixels
    Size displaySize;                   ///< as displayed, after rotation
    AffineTransform preferredTransform; ///< of the first video track
    CMTime duration;                    ///< of the whole movie
    float nominalFrameRate = 0;         ///< frames a second; 0 if unknown
    CMTime frameDuration;               ///< length of one frame
    bool hasAudio = false;
    std::optional<FourCharCode> videoCodec; ///< of the first sample entry, for example "avc1" or "hvc1"
};

} // namespace zelvra
