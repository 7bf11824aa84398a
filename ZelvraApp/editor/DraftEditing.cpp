// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/DraftEditing.h"

#include <algorithm>

namespace zelvra {

namespace {

/// A fraction of the picture's height as a fraction of its width.
double ofWidth(double ofHeight, const Size& picture) {
    return ofHeight / (picture.width / std::max(picture.height, 1.0));
}

} // namespace

DraftShape withKind(const HighlightDraft& draft, HighlightShapeKind kind, double radiusRatio) {
    DraftShape shape = draft.shape;
    if (kind == shape.kind) {
        return shape;
    }
    shape.id = Uuid::random();
    shape.kind = kind;
    switch (kind) {
    case HighlightShapeKind::circle:
        shape.p1 = {0.5, 0.5};
        shape.p2 = {0.5 + ofWidth(radiusRatio, draft.videoDisplaySize), 0.5};
        break;
    case HighlightShapeKind::arrow:
        shape.p1 = {0.3, 0.5};
        shape.p2 = {0.7, 0.5};
        break;
    case HighlightShapeKind::rectangle:
        shape.p1 = {0.35, 0.35};
        shape.p2 = {0.65, 0.65};
        break;
    }
    return shape;
}

DraftShape withRadius(const HighlightDraft& draft, double radiusRatio) {
    DraftShape shape = draft.shape;
    if (shape.kind == HighlightShapeKind::circle) {
        shape.p2 = {shape.p1.x + ofWidth(radiusRatio, draft.videoDisplaySize), shape.p1.y};
    }
    return shape;
}

} // namespace zelvra
