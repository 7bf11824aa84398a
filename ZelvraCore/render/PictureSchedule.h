// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/media/FrameIndex.h"

#include <cstdint>
#include <vector>

namespace zelvra {

/// The pictures of a re-encoded movie in order, with times in ticks of that movie, and its sound. Plain
/// values.
struct PictureSchedule {
    /// One picture of the source, or the frames of one freeze.
    struct Run {
        std::int64_t time = 0; ///< in ticks of 1/`timescale` s
        std::size_t index = 0; ///< of a frame of the source, or of a highlight
        std::int64_t frames = 1;
        bool frozen = false;
        bool operator==(const Run&) const = default;
    };

    std::int32_t timescale = 1;
    CMTime frameDuration;  ///< of a freeze's frames
    std::vector<Run> runs; ///< source indices never decrease
    std::int64_t end = 0;  ///< when the last picture ends
    std::vector<SoundPiece> sound;

    std::int64_t pictureCount() const;
    /// Ticks from a freeze's start to its frame of that number. Each is rounded on its own.
    std::int64_t ticksOfFrame(std::int64_t number) const;
};

/// Source pictures keep their own times, variable rates included. The timescale holds the source's times and
/// those of a freeze's frames exactly if it can do so with moderate ticks, else the source's. The sound ends
/// on a tick of the source's pictures, as they do.
PictureSchedule schedulePictures(const Timeline& timeline, const FrameIndex& frames,
                                 const CMTime& frameDuration);

} // namespace zelvra
