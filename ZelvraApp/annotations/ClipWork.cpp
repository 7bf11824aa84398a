// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/ClipWork.h"

#include "ZelvraApp/annotations/Identical.h"

#include <algorithm>

namespace zelvra {

void ExportedWork::note(const Annotations& annotations) {
    if (!annotations.markedClips.empty()) {
        markedClips = annotations.markedClips;
    } else {
        highlights = annotations.highlights;
        trimRange = annotations.trimRange;
    }
}

bool ClipWork::hasUnexportedWork() const {
    const bool newClips =
        !annotations.markedClips.empty() && !identical(annotations.markedClips, exported.markedClips);
    const std::vector<Highlight>& loose = annotations.looseHighlights();
    const bool newHighlights = !loose.empty() && !identical(loose, exported.highlights);
    const bool newTrim = !loose.empty() && annotations.markedClips.empty() && !annotations.editingClipID &&
                         !identical(annotations.trimRange, exported.trimRange);
    return newClips || newHighlights || newTrim || annotations.hasUnsavedEdits();
}

std::size_t ClipWork::highlightCount() const {
    std::size_t count = annotations.looseHighlights().size();
    for (const MarkedClip& clip : annotations.markedClips) {
        count +=
            annotations.editingClipID == clip.id ? annotations.highlights.size() : clip.highlights.size();
    }
    return count;
}

namespace {

/// The items of both, the earlier ones first; of two with one id the later one.
template <class Item>
std::vector<Item> joined(const std::vector<Item>& earlier, const std::vector<Item>& later) {
    std::vector<Item> all;
    for (const Item& item : earlier) {
        if (std::ranges::find(later, item.id, &Item::id) == later.end()) {
            all.push_back(item);
        }
    }
    all.insert(all.end(), later.begin(), later.end());
    return all;
}

std::vector<Highlight> joinedInOrder(const std::vector<Highlight>& earlier,
                                     const std::vector<Highlight>& later) {
    std::vector<Highlight> all = joined(earlier, later);
    std::ranges::stable_sort(all, {}, &Highlight::timestamp);
    return all;
}

Annotations merged(Annotations earlier, Annotations later) {
    if (!later.hasContent()) {
        return earlier;
    }
    if (earlier.editingClipID) {
        earlier.markCurrentClip();
    }
    std::vector<Highlight>& loose = later.editingClipID ? later.fullViewHighlights : later.highlights;
    loose = joinedInOrder(earlier.highlights, loose);
    later.markedClips = joined(earlier.markedClips, later.markedClips);
    if (!later.trimRange) {
        later.trimRange = earlier.trimRange;
    }
    return later;
}

ExportedWork merged(const ExportedWork& earlier, const ExportedWork& later) {
    return {.highlights = joinedInOrder(earlier.highlights, later.highlights),
            .trimRange = later.highlights.empty() ? earlier.trimRange : later.trimRange,
            .markedClips = joined(earlier.markedClips, later.markedClips)};
}

} // namespace

ClipWork merged(const ClipWork& earlier, const ClipWork& later) {
    ClipWork both{.annotations = merged(earlier.annotations, later.annotations),
                  .defaults = later.annotations.hasContent() ? later.defaults : earlier.defaults,
                  .exported = merged(earlier.exported, later.exported),
                  .written = later.written};
    both.written.insert(earlier.written.begin(), earlier.written.end());
    return both;
}

bool identical(const ExportedWork& a, const ExportedWork& b) {
    return identical(a.highlights, b.highlights) && identical(a.trimRange, b.trimRange) &&
           identical(a.markedClips, b.markedClips);
}

bool identical(const ClipWork& a, const ClipWork& b) {
    return identical(a.annotations, b.annotations) && identical(a.defaults, b.defaults) &&
           identical(a.exported, b.exported) && a.written == b.written;
}

} // namespace zelvra
