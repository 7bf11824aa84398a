// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/HighlightDraft.h"

#include <QPainterPath>
#include <QPen>
#include <QRectF>

namespace zelvra {

/// A shape as the screen shows it: a path, and the pen that strokes it. The caller sets the pen's colour. The
/// export draws shapes with code of its own, with other heads and ends; both agree on the anchors.
struct ShapeOutline {
    QPainterPath path; ///< in the coordinates in which the picture fills the given rectangle
    QPen pen;

    /// The area that the stroke covers.
    QRectF bounds() const;
};

/// The outline of a shape over a picture that fills `imageRect`, in logical pixels. The stroke is at least 1
/// wide. A circle's stroke is inside its radius. Empty if an anchor is not a number.
ShapeOutline shapeOutline(const DraftShape& shape, const QRectF& imageRect);

/// An open shaft with an open head at `to`, whose sides are four times the stroke long and at least 18.
QPainterPath arrowPath(const QPointF& from, const QPointF& to, double strokeWidth);

} // namespace zelvra
