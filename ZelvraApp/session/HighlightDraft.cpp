// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/HighlightDraft.h"

#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/annotations/SessionTime.h"

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

bool identical(const DraftShape& a, const DraftShape& b) {
    return a.id == b.id && a.kind == b.kind && a.p1 == b.p1 && a.p2 == b.p2 && a.color == b.color &&
           a.strokeWidthRatio == b.strokeWidthRatio;
}

} // namespace

DraftShape draftShape(const HighlightShape& shape) {
    return {.id = shape.id,
            .kind = shape.kind,
            .p1 = shape.p1,
            .p2 = shape.p2,
            .color = shape.strokeColor,
            .strokeWidthRatio = shape.strokeWidthRatio};
}

double HighlightDraft::circleRadiusRatio() const {
    if (shape.kind != HighlightShapeKind::circle) {
        return 0;
    }
    const double aspect = videoDisplaySize.width / std::max(videoDisplaySize.height, 1.0);
    return std::hypot(aspect * (shape.p2.x - shape.p1.x), shape.p2.y - shape.p1.y);
}

Highlight HighlightDraft::highlight() const {
    return {.id = id,
            .timestamp = timestamp,
            .duration = sessionTime(durationSec),
            .shape = {.id = shape.id,
                      .kind = shape.kind,
                      .p1 = shape.p1,
                      .p2 = shape.p2,
                      .strokeColor = shape.color,
                      .strokeWidthRatio = shape.strokeWidthRatio}};
}

HighlightDraft HighlightDraft::editing(const Highlight& highlight, Image frame, Size videoDisplaySize) {
    return {.id = highlight.id,
            .timestamp = highlight.timestamp,
            .durationSec = highlight.duration.seconds(),
            .frame = std::move(frame),
            .videoDisplaySize = videoDisplaySize,
            .shape = draftShape(highlight.shape),
            .isEditing = true};
}

bool identical(const HighlightDraft& a, const HighlightDraft& b) {
    return a.id == b.id && identical(a.timestamp, b.timestamp) && a.durationSec == b.durationSec &&
           &a.frame.raster() == &b.frame.raster() && a.videoDisplaySize == b.videoDisplaySize &&
           identical(a.shape, b.shape) && a.isEditing == b.isEditing;
}

} // namespace zelvra
