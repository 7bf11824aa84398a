// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeOutline.h"

#include "ZelvraApp/editor/PictureMapping.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zelvra {

namespace {

constexpr double miterLimit = 10;
constexpr double leastStroke = 1;

bool isFinite(const QPointF& point) {
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

QPen pen(double width, Qt::PenCapStyle cap, Qt::PenJoinStyle join) {
    QPen pen(QBrush(Qt::black), width, Qt::SolidLine, cap, join);
    pen.setMiterLimit(miterLimit);
    return pen;
}

/// A stroke wider than the circle's radius covers the disc; it must not reach across the centre.
ShapeOutline circleOutline(const QPointF& centre, const QPointF& rim, double strokeWidth) {
    const double outer = std::max(std::hypot(rim.x() - centre.x(), rim.y() - centre.y()), 1.0);
    const double width = std::min(strokeWidth, outer);
    ShapeOutline outline{.path = {}, .pen = pen(width, Qt::FlatCap, Qt::SvgMiterJoin)};
    outline.path.addEllipse(centre, outer - width / 2, outer - width / 2);
    return outline;
}

} // namespace

QRectF ShapeOutline::bounds() const {
    const double reach = pen.widthF() / 2 * (pen.joinStyle() == Qt::RoundJoin ? 1 : std::numbers::sqrt2) + 1;
    return path.isEmpty() ? QRectF() : path.boundingRect().adjusted(-reach, -reach, reach, reach);
}

ShapeOutline shapeOutline(const DraftShape& shape, const QRectF& imageRect) {
    const QPointF from = viewPoint(shape.p1, imageRect);
    const QPointF to = viewPoint(shape.p2, imageRect);
    const double width = std::max(shape.strokeWidthRatio * imageRect.height(), leastStroke);
    if (!isFinite(from) || !isFinite(to) || !std::isfinite(width)) {
        return {};
    }
    switch (shape.kind) {
    case HighlightShapeKind::circle: return circleOutline(from, to, width);
    case HighlightShapeKind::arrow:
        return {.path = arrowPath(from, to, width), .pen = pen(width, Qt::RoundCap, Qt::RoundJoin)};
    case HighlightShapeKind::rectangle: break;
    }
    ShapeOutline outline{.path = {}, .pen = pen(width, Qt::FlatCap, Qt::SvgMiterJoin)};
    outline.path.addRect(QRectF(from, to).normalized());
    return outline;
}

QPainterPath arrowPath(const QPointF& from, const QPointF& to, double strokeWidth) {
    constexpr double opening = std::numbers::pi / 7;
    const double back = std::atan2(to.y() - from.y(), to.x() - from.x()) + std::numbers::pi;
    const double length = std::max(4 * strokeWidth, 18.0);
    const auto headEnd = [&](double angle) {
        return to + length * QPointF(std::cos(angle), std::sin(angle));
    };
    QPainterPath path(from);
    path.lineTo(to);
    path.moveTo(headEnd(back - opening));
    path.lineTo(to);
    path.lineTo(headEnd(back + opening));
    return path;
}

} // namespace zelvra
