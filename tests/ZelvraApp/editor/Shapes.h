// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/HighlightDraft.h"

namespace zelvra::test {

inline DraftShape shapeOf(HighlightShapeKind kind, const Point& p1, const Point& p2,
                          double strokeWidthRatio = 0.005) {
    return {.id = {},
            .kind = kind,
            .p1 = p1,
            .p2 = p2,
            .color = {1, 0, 0, 1},
            .strokeWidthRatio = strokeWidthRatio};
}
inline DraftShape circleOf(const Point& centre, const Point& rim) {
    return shapeOf(HighlightShapeKind::circle, centre, rim);
}
inline DraftShape arrowOf(const Point& tail, const Point& tip) {
    return shapeOf(HighlightShapeKind::arrow, tail, tip);
}
inline DraftShape rectangleOf(const Point& corner, const Point& opposite) {
    return shapeOf(HighlightShapeKind::rectangle, corner, opposite);
}

} // namespace zelvra::test
