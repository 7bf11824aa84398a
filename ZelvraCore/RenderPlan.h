// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTimeRange.h"
#include "ZelvraCore/records/FreezeEncoding.h"
#include "ZelvraCore/records/Highlight.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace zelvra {

/// Every decision of a render that needs no media: pure functions of values, any thread, nothing thrown.

struct RenderPlan {
    bool copyOnly = false; ///< the output is a byte copy of the source; nothing else here is used
    CMTime rangeStart;     ///< the stretch of the source that the output covers, not clamped to the source
    CMTime rangeEnd;
    std::vector<Highlight> highlights; ///< those within the range (both ends count), in output order
    VideoCodec freezeCodec = VideoCodec::h264;
    bool passthrough = false;                ///< the source's compressed video is kept as it is
    bool needsTransformInstructions = false; ///< the source is rotated or mirrored
};

/// One piece of the output timeline.
struct TimelineSegment {
    enum class Kind { source, freeze };

    Kind kind = Kind::source;
    CMTime sourceStart; ///< where a source piece starts in the source; zero for a freeze
    CMTime duration;
    CMTime outputStart;
    std::size_t highlightIndex = 0; ///< of a freeze: index into the plan's highlights
};

struct Timeline {
    std::vector<TimelineSegment> segments;
    CMTime total;
};

/// From `range.start` to `range.end()` of the output, pictures are turned by `transform`.
struct TransformInstruction {
    CMTimeRange range;
    AffineTransform transform;
};

/// Highlights may come in any order; those at one moment keep theirs. An absent range means the whole source.
RenderPlan planRender(std::span<const Highlight> highlights, const std::optional<CMTimeRange>& sourceRange,
                      bool includeAudio, const SourceInfo& info);

/// Lays source pieces and freezes end to end. `freezeDurations` holds one duration for each of the plan's
/// highlights. The source plays up to, not including, a highlighted moment and resumes at that same moment.
Timeline layoutTimeline(const RenderPlan& plan, std::span<const CMTime> freezeDurations);

/// Freezes are upright already; every other stretch is turned by the source's transform. Covers the output
/// without gaps.
std::vector<TransformInstruction> transformInstructions(const Timeline& timeline, const SourceInfo& info);

/// Progress from 0 to 1: the first half while freeze clips are made, the second while the movie is written.
double freezeProgress(std::size_t finished, std::size_t count);
double exportProgress(double fraction);

/// Number of frames that a freeze of `totalDuration` has: the whole number nearest to the quotient (halves
/// away from zero), at least 1. Both durations numeric and positive.
std::int64_t freezeFrameCount(const CMTime& totalDuration, const CMTime& frameDuration);

/// "zv_freeze_" and a new UUID, with the extension ".mov".
std::filesystem::path freezeClipName();

} // namespace zelvra
