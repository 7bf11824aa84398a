// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourcePictures.h"
#include "ZelvraCore/records/CMTime.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// What the finished movie shows of the source, in terms of whole pictures: from which to which, and where it
/// freezes. Times are ticks of the source track on its media timeline.
struct VideoCut {
    struct Freeze {
        std::uint32_t position = 0; ///< rank of the frozen picture; `endRank` = after the last shown one
        std::int64_t frames = 1;    ///< number of frames, each `frameDuration` long
        bool operator==(const Freeze&) const = default;
    };

    std::int64_t start = 0; ///< the first shown picture is on screen at this moment
    std::int64_t end = 0;
    std::uint32_t firstRank = 0;
    std::uint32_t endRank = 0;   ///< one past the last shown picture
    std::vector<Freeze> freezes; ///< in the order of the output; positions never decrease
    CMTime frameDuration;        ///< of a freeze's frames

    /// The moment at which the freeze at `position` interrupts the source.
    std::int64_t momentOf(std::uint32_t position, const SourcePictures& pictures) const {
        return position == endRank ? end : position == firstRank ? start : pictures.timeAtRank(position);
    }
};

/// A freeze as it is asked for: at `moment` (media ticks), `frames` long.
struct FreezeMoment {
    std::int64_t moment = 0;
    std::int64_t frames = 1;
};

/// What a source shows of its pictures through its own edit.
struct VisiblePictures {
    std::uint32_t firstRank = 0;
    std::uint32_t endRank = 0;
    std::int64_t end = 0; ///< when the last of them goes, media ticks
};

/// Resolves moments to pictures. A moment within a picture's time freezes when that picture appears; one at
/// or past `end`, or past the last picture, freezes after all motion. Without such a freeze `end` is cut to
/// the end of the last picture; a `start` before the first picture shows that one from `start` on. Throws
/// CannotPassThrough where nothing is left to show.
VideoCut cutVideo(const SourcePictures& pictures, const VisiblePictures& visible, std::int64_t start,
                  std::int64_t end, std::span<const FreezeMoment> freezes, const CMTime& frameDuration);

} // namespace zelvra::passthrough
