// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/Annotations.h"

#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/annotations/SessionTime.h"

#include <algorithm>
#include <utility>

namespace zelvra {

namespace {

template <class Clips>
auto findClip(Clips& clips, const std::optional<Uuid>& id) {
    return std::ranges::find_if(clips, [&](const MarkedClip& clip) { return id && clip.id == *id; });
}

} // namespace

bool Annotations::hasContent() const {
    return !highlights.empty() || trimRange || !markedClips.empty();
}

const std::vector<Highlight>& Annotations::looseHighlights() const {
    return editingClipID ? fullViewHighlights : highlights;
}

bool Annotations::hasUnsavedEdits() const {
    if (!editingClipID || !trimRange) {
        return false;
    }
    const auto edited = findClip(markedClips, editingClipID);
    return edited == markedClips.end() || !identical(edited->range, *trimRange) ||
           !identical(edited->highlights, highlights);
}

bool Annotations::commit(const Highlight& highlight) {
    const auto edited = std::ranges::find(highlights, highlight.id, &Highlight::id);
    if (edited != highlights.end()) {
        *edited = highlight;
    } else {
        highlights.push_back(highlight);
    }
    std::ranges::stable_sort(highlights, {}, &Highlight::timestamp);
    return true;
}

bool Annotations::deleteHighlight(const Uuid& id) {
    const Uuid removed = id; // the caller's may be that of the highlight that goes
    return std::erase_if(highlights, [&](const Highlight& other) { return other.id == removed; }) > 0;
}

bool Annotations::setTrim(const std::optional<CMTimeRange>& range) {
    if (!range && !trimRange) {
        return false;
    }
    activeRoughClipID.reset();
    if (range) {
        trimRange = range;
        std::erase_if(highlights, [&](const Highlight& highlight) {
            return highlight.timestamp < range->start || highlight.timestamp > range->end();
        });
    } else if (editingClipID) {
        showWholeSource();
    } else {
        trimRange.reset();
    }
    return true;
}

bool Annotations::dragTrimStart(double toSeconds) {
    if (!trimRange) {
        return false;
    }
    const CMTime end = trimRange->end();
    const double inside = toSeconds >= 0 ? toSeconds : 0;
    trimRange =
        CMTimeRange::fromStartToEnd(sessionTime(std::min(end.seconds() - minimumLengthSec, inside)), end);
    return true;
}

bool Annotations::dragTrimEnd(double toSeconds, const CMTime& duration) {
    if (!trimRange) {
        return false;
    }
    const double inside = std::min(duration.seconds(), toSeconds);
    const double least = trimRange->start.seconds() + minimumLengthSec;
    trimRange = CMTimeRange::fromStartToEnd(trimRange->start, sessionTime(inside > least ? inside : least));
    return true;
}

bool Annotations::markInPoint(const CMTime& now, const CMTime& duration, double lengthSec) {
    if (trimRange) {
        const CMTime end = trimRange->end();
        const CMTime start = minimum(maximum(now, CMTime::zero()), end - minimumLength);
        trimRange = CMTimeRange::fromStartToEnd(start, end);
        return true;
    }
    const CMTime end = minimum(now + sessionTime(lengthSec), duration);
    if (end <= now + minimumLength) {
        return false;
    }
    markedClips.push_back({Uuid::random(), CMTimeRange::fromStartToEnd(now, end), {}});
    activeRoughClipID = markedClips.back().id;
    return true;
}

bool Annotations::markOutPoint(const CMTime& now, const CMTime& duration) {
    if (trimRange) {
        const CMTime start = trimRange->start;
        const CMTime end = minimum(maximum(now, start + minimumLength), duration);
        trimRange = CMTimeRange::fromStartToEnd(start, end);
        return true;
    }
    const auto clip = findClip(markedClips, activeRoughClipID);
    if (clip == markedClips.end() || now <= clip->range.start + minimumLength) {
        return false;
    }
    clip->range = CMTimeRange::fromStartToEnd(clip->range.start, minimum(now, duration));
    return true;
}

bool Annotations::markCurrentClip() {
    if (!trimRange) {
        return false;
    }
    const auto edited = findClip(markedClips, editingClipID);
    if (edited != markedClips.end()) {
        edited->range = *trimRange;
        edited->highlights = std::move(highlights);
    } else {
        markedClips.push_back({Uuid::random(), *trimRange, std::move(highlights)});
    }
    showWholeSource();
    return true;
}

/// Ends an edit; the whole source has the highlights again that were set aside.
void Annotations::showWholeSource() {
    highlights = std::exchange(fullViewHighlights, {});
    trimRange.reset();
    editingClipID.reset();
}

bool Annotations::editMarkedClip(const Uuid& id) {
    const auto clip = findClip(markedClips, id);
    if (clip == markedClips.end() || editingClipID == id) {
        return false;
    }
    if (!editingClipID) {
        fullViewHighlights = std::move(highlights);
    }
    editingClipID = clip->id;
    highlights = clip->highlights;
    trimRange = clip->range;
    activeRoughClipID.reset();
    return true;
}

bool Annotations::unmark(const Uuid& id) {
    const auto clip = findClip(markedClips, id);
    if (clip == markedClips.end()) {
        return false;
    }
    if (activeRoughClipID == clip->id) {
        activeRoughClipID.reset();
    }
    markedClips.erase(clip);
    return true;
}

bool identical(const Annotations& a, const Annotations& b) {
    return identical(a.highlights, b.highlights) && identical(a.trimRange, b.trimRange) &&
           identical(a.markedClips, b.markedClips) && a.editingClipID == b.editingClipID &&
           a.activeRoughClipID == b.activeRoughClipID &&
           identical(a.fullViewHighlights, b.fullViewHighlights);
}

} // namespace zelvra
