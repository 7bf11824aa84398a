// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeDrag.h"

#include "ZelvraApp/editor/PictureMapping.h"

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

constexpr double leastWayOfDrawing = 3;
constexpr double leastWayOfHandle = 1;

Point operator+(const Point& a, const Point& b) {
    return {a.x + b.x, a.y + b.y};
}

Point insidePicture(const Point& point) {
    return {std::clamp(point.x, 0.0, 1.0), std::clamp(point.y, 0.0, 1.0)};
}

} // namespace

ShapeAnchors moved(const ShapeAnchors& anchors, Grip handle, const Point& offset) {
    return {handle == Grip::End2 ? anchors.p1 : anchors.p1 + offset,
            handle == Grip::End1 ? anchors.p2 : anchors.p2 + offset};
}

ShapeDrag::ShapeDrag(Grip grip, const QPointF& pressedAt, const DraftShape& shape, const QRectF& imageRect)
    : grip_(grip),
      pressedAt_(pressedAt),
      start_{shape.p1, shape.p2},
      imageRect_(imageRect),
      drawsNothing_(imageRect.isEmpty() ||
                    (grip == Grip::Picture &&
                     dragStartsOnHandle(shape, pressedAt - imageRect.topLeft(), imageRect.size()))) {}

std::optional<ShapeAnchors> ShapeDrag::moveTo(const QPointF& position) {
    const QPointF way = position - pressedAt_;
    const double least = grip_ == Grip::Picture ? leastWayOfDrawing : leastWayOfHandle;
    recognised_ = recognised_ || std::hypot(way.x(), way.y()) >= least;
    if (drawsNothing_ || !recognised_) {
        return std::nullopt;
    }
    return grip_ == Grip::Picture ? drawnTo(position)
                                  : moved(start_, grip_, normalised(way, imageRect_.size()));
}

ShapeAnchors ShapeDrag::drawnTo(const QPointF& position) const {
    const auto inPicture = [this](const QPointF& point) {
        return insidePicture(normalised(point - imageRect_.topLeft(), imageRect_.size()));
    };
    return {inPicture(pressedAt_), inPicture(position)};
}

} // namespace zelvra
