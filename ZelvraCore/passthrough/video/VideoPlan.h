// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SamplePlan.h"
#include "ZelvraCore/passthrough/video/StillCoding.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// All that was decided about the video track of a passthrough movie. A plain value: VideoTrackBuilder::plan
/// returns it, VideoTrackBuilder::build makes the track from it.
struct VideoPlan {
    SamplePlan samples;
    /// How stills are coded; empty for HEVC, whose freezes are whole clips.
    StillCodings stills;
    /// For each freeze the index of the source picture whose metadata it takes over; empty for H.264.
    std::vector<std::uint32_t> frozenPictures;
};

} // namespace zelvra::passthrough
