// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/FrameIndex.h"
#include "ZelvraCore/records/CMTimeRange.h"
#include "ZelvraCore/records/Highlight.h"
#include "ZelvraCore/records/SoundPiece.h"
#include "ZelvraCore/records/SourceInfo.h"
#include "ZelvraCore/records/VideoCodec.h"

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
    bool passthrough = false; ///< the source's compressed video is kept as it is
};

/// One piece of the output timeline.
struct TimelineSegment {
    enum class Kind { source, freeze };

    Kind kind = Kind::source;
    CMTime sourceStart; ///< where a source piece starts in the source; zero for a freeze
    CMTime duration;
    CMTime outputStart;
    std::size_t highlightIndex = 0; ///< of a freeze: index into the plan's highlights
    /// Of a source piece: indexes of the picture on screen at its start, and one past the one at its end. The
    /// first may have appeared before the piece starts; the others appear within it, at their own times.
    std::size_t firstPicture = 0;
    std::size_t endPicture = 0;
};

/// What an export shows and plays, and when.
struct Timeline {
    std::vector<TimelineSegment> segments; ///< the pictures, without a gap; empty if there is no picture
    CMTime total;                          ///< when the last picture ends
    std::vector<SoundPiece> sound;         ///< may end later than the pictures
};

/// Highlights may come in any order; those at one moment keep theirs. An absent range means the whole source.
RenderPlan planRender(std::span<const Highlight> highlights, const std::optional<CMTimeRange>& sourceRange,
                      bool includeAudio, const SourceInfo& info);

/// Lays source pieces and freezes end to end. `frames` are the source's pictures, `info` is the source's.
/// These are the rules of every export, whether it passes through or is encoded anew:
/// - The range is clamped to the movie, from zero to `info.duration`. It starts and ends on a tick of
/// `frames`,
///   widened if it has to be, so that no picture of it is lost. Before the first picture, the first one is
///   shown.
/// - A moment within a picture's time freezes when that picture appears, or when the range starts if that is
///   later. The source plays up to, not including, that moment and resumes there with the same picture. A
///   moment at or past the end freezes after everything else.
/// - Sound may go on after the last picture's own length (a sound-only tail). A freeze in the tail is at its
///   own time: the last picture stays on screen until then, and again after the freeze until the range ends.
///   Without such a freeze, the pictures end with the last picture's own length.
/// - Sound plays with the source pieces, to the exact end of the range, and is silent during freezes.
/// - Each freeze is a whole number of frames long, see freezeFrameCount.
Timeline layoutTimeline(const RenderPlan& plan, const SourceInfo& info, const FrameIndex& frames);

/// Progress from 0 to 1: the first half while freeze clips are made, the second while the movie is written.
double freezeProgress(std::size_t finished, std::size_t count);
double exportProgress(double fraction);

/// Number of frames that a freeze of `totalDuration` has: the whole number nearest to the quotient (halves
/// away from zero), at least 1. Both durations numeric and positive.
std::int64_t freezeFrameCount(const CMTime& totalDuration, const CMTime& frameDuration);

/// "zv_freeze_" and a new UUID, with the extension ".mov".
std::filesystem::path freezeClipName();

} // namespace zelvra
