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
    return grip_ == Grip::Picture ? drawnTo(position) : movedBy(normalised(way, imageRect_.size()));
}

ShapeAnchors ShapeDrag::drawnTo(const QPointF& position) const {
    const auto inPicture = [this](const QPointF& point) {
        return insidePicture(normalised(point - imageRect_.topLeft(), imageRect_.size()));
    };
    return {inPicture(pressedAt_), inPicture(position)};
}

ShapeAnchors ShapeDrag::movedBy(const Point& offset) const {
    return {grip_ == Grip::End2 ? start_.p1 : start_.p1 + offset,
            grip_ == Grip::End1 ? start_.p2 : start_.p2 + offset};
}

} // namespace zelvra
