// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/Annotations.h"
#include "ZelvraApp/annotations/SessionTime.h"

#include <utility>
#include <vector>

/// Highlights, ranges and clips in seconds, so that tests read as a user would describe them.
namespace zelvra::test {

inline Highlight highlightAt(double seconds) {
    return {.id = Uuid::random(),
            .timestamp = sessionTime(seconds),
            .duration = sessionTime(3),
            .shape = {.id = Uuid::random(),
                      .kind = HighlightShapeKind::circle,
                      .p1 = {0.5, 0.5},
                      .p2 = {0.5, 0.6},
                      .strokeColor = {1, 0, 0, 1},
                      .strokeWidthRatio = 0.004}};
}

inline CMTimeRange range(double start, double end) {
    return CMTimeRange::fromStartToEnd(sessionTime(start), sessionTime(end));
}

inline MarkedClip clipOf(double start, double end) {
    return {Uuid::random(), range(start, end), {}};
}

inline std::vector<double> moments(const std::vector<Highlight>& highlights) {
    std::vector<double> seconds;
    seconds.reserve(highlights.size());
    for (const Highlight& highlight : highlights) {
        seconds.push_back(highlight.timestamp.seconds());
    }
    return seconds;
}

/// (-1, -1) for no range.
inline std::pair<double, double> span(const std::optional<CMTimeRange>& range) {
    return range ? std::pair(range->start.seconds(), range->end().seconds()) : std::pair(-1.0, -1.0);
}

inline std::vector<std::pair<double, double>> spans(const std::vector<MarkedClip>& clips) {
    std::vector<std::pair<double, double>> result;
    result.reserve(clips.size());
    for (const MarkedClip& clip : clips) {
        result.push_back(span(clip.range));
    }
    return result;
}

} // namespace zelvra::test
