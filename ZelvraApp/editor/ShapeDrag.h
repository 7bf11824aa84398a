// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/editor/ShapeHandles.h"

#include <optional>

namespace zelvra {

/// A shape's two points. A drag changes nothing else.
struct ShapeAnchors {
    Point p1;
    Point p2;
    bool operator==(const ShapeAnchors&) const = default;
};

/// The anchors after the shape, or the one point that `handle` holds, was moved by `offset`.
ShapeAnchors moved(const ShapeAnchors& anchors, Grip handle, const Point& offset);

/// One drag on the canvas, from the press of the button to its release.
///
/// On the picture it draws: from the point of the press to the pointer, both kept inside the picture. Near a
/// handle it draws nothing. On a handle it moves the shape or one of its points by the whole distance from
/// the press, so that the shape follows the pointer without drift, also out of the picture.
///
/// Positions are logical pixels, in the coordinates in which the picture fills `imageRect`.
class ShapeDrag {
public:
    ShapeDrag(Grip grip, const QPointF& pressedAt, const DraftShape& shape, const QRectF& imageRect);

    /// The shape's anchors with the pointer at `position`. nullopt before the pointer has moved far enough
    /// for a drag (3 pixels on the picture, 1 on a handle), and if the drag draws nothing.
    std::optional<ShapeAnchors> moveTo(const QPointF& position);

private:
    ShapeAnchors drawnTo(const QPointF& position) const;

    Grip grip_;
    QPointF pressedAt_;
    ShapeAnchors start_;
    QRectF imageRect_;
    bool drawsNothing_;
    bool recognised_ = false;
};

} // namespace zelvra
