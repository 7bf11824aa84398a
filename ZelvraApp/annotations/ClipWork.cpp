// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/ClipWork.h"

#include "ZelvraApp/annotations/Identical.h"

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

bool identical(const ExportedWork& a, const ExportedWork& b) {
    return identical(a.highlights, b.highlights) && identical(a.trimRange, b.trimRange) &&
           identical(a.markedClips, b.markedClips);
}

bool identical(const ClipWork& a, const ClipWork& b) {
    return identical(a.annotations, b.annotations) && identical(a.defaults, b.defaults) &&
           identical(a.exported, b.exported) && a.written == b.written;
}

} // namespace zelvra
