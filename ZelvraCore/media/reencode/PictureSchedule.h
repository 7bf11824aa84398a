// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/FrameIndex.h"
#include "ZelvraCore/records/SoundPiece.h"

#include <cstdint>
#include <vector>

namespace zelvra {

/// What a movie that is encoded anew shows of its source: from when to when, and where it freezes. Times are
/// on the source's presentation timeline.
struct Composition {
    struct Freeze {
        CMTime moment;
        std::int64_t frames = 1; ///< each `frameDuration` long
    };

    CMTime start;
    CMTime end;                  ///< not shown itself; both may lie beyond the source
    std::vector<Freeze> freezes; ///< by moment
    CMTime frameDuration;        ///< of a freeze's frames
};

/// Every picture of such a movie with its exact time, and its sound in pieces. Source pictures keep the
/// source's own times, variable rates included; a picture freezes when it appears, and the sound with it, as
/// in a movie that passes through. A freeze at or past the last picture comes after it, and where sound
/// outlasts the pictures the last one stays on until then. Plain values.
struct PictureSchedule {
    /// One source picture, or the frames of one freeze.
    struct Run {
        std::int64_t time = 0; ///< in the output, ticks of 1/`timescale` s
        std::size_t index = 0; ///< of a frame of the source, or of a freeze
        std::int64_t frames = 1;
        bool frozen = false;
        bool operator==(const Run&) const = default;
    };

    std::int32_t timescale = 1;
    std::int64_t freezeStep = 1; ///< ticks from one frame of a freeze to the next
    std::vector<Run> runs;       ///< source indices never decrease
    std::int64_t end = 0;        ///< when the last picture goes
    std::vector<SoundPiece> sound;

    std::int64_t pictureCount() const;
};

/// `movieEnd` is where the source's presentation ends, sound included. Throws MediaError::outOfRange where
/// nothing is left to show.
PictureSchedule schedulePictures(const Composition& composition, const FrameIndex& frames,
                                 const CMTime& movieEnd);

} // namespace zelvra
