// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// The video track of the finished movie before a byte of it is read: which samples, in which order, with
/// which times. The pure planners (StillPlan.h, SplicePlan.h) make it; the track builders give the samples
/// their bytes. Times are output ticks: the source's timescale times `timescaleFactor`.
struct PlannedSample {
    enum class Kind : std::uint8_t {
        source,  ///< `index` counts the source's samples in decode order
        freeze,  ///< `index` counts the freezes
        leadIn,  ///< a copy of the first shown picture, for players that ignore edits
        cover,   ///< a copy of the first shown picture right before it, which hides what had to be decoded
        leadOut, ///< a copy of the last shown picture, for players that ignore edits
    };

    Kind kind = Kind::source;
    bool shown = true; ///< within the edit; false: only decoded
    bool sync = false;
    bool startsRun = false;  ///< decoding resumes here after a cut
    std::uint32_t index = 0; ///< see Kind
    std::uint32_t part = 0;  ///< which sample of a freeze, a lead-in or a lead-out
    std::int64_t decodeTime = 0;
    std::int64_t presentationTime = 0;
    bool operator==(const PlannedSample&) const = default;
};

void appendTo(std::vector<PlannedSample>& samples, std::vector<PlannedSample> more);

struct SamplePlan {
    std::uint32_t timescaleFactor = 1;
    std::vector<PlannedSample> samples; ///< in decode order; the first decodes at 0
    std::int64_t editStart = 0;         ///< presentation time of the first moment that is shown
    std::int64_t editDuration = 0;
    std::int64_t mediaDuration = 0; ///< decode time at which the last sample ends

    bool has(PlannedSample::Kind kind) const;
};

} // namespace zelvra::passthrough
