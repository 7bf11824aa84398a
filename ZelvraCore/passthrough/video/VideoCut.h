// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourcePictures.h"
#include "ZelvraCore/records/CMTime.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zelvra::passthrough {

/// What the finished movie shows of the source, in terms of whole pictures: from which to which, and where it
/// freezes. Times are ticks of the source track on its media timeline. Plain values.
///
/// If sound outlasts the pictures, the last picture may be shown again after a freeze. That is a *hold*: it
/// is stored like a freeze of one frame, made from a clip of the picture as it is.
struct VideoCut {
    struct Freeze {
        std::uint32_t position = 0; ///< rank of the picture that follows; `endRank` = after the last one
        std::int64_t frames = 1;    ///< number of frames, each `frameDuration` long
        std::optional<std::int64_t> heldTicks = {}; ///< how long a hold lasts; nullopt for a freeze
        std::size_t highlight = 0;                  ///< which one freezes; without meaning for a hold
        bool operator==(const Freeze&) const = default;
    };

    std::int64_t start = 0; ///< the first shown picture is on screen at this moment
    std::int64_t end = 0;   ///< when the last shown picture ends, or freezes for the first time
    std::uint32_t firstRank = 0;
    std::uint32_t endRank = 0;   ///< one past the last shown picture
    std::vector<Freeze> freezes; ///< in the order of the output; positions never decrease
    CMTime frameDuration;        ///< of a freeze's frames

    /// The moment at which the freeze at `position` interrupts the source.
    std::int64_t momentOf(std::uint32_t position, const SourcePictures& pictures) const {
        return position == endRank ? end : position == firstRank ? start : pictures.timeAtRank(position);
    }
};

} // namespace zelvra::passthrough
