// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeHandles.h"

#include "ZelvraApp/editor/PictureMapping.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zelvra {

namespace {

constexpr double exclusionRadius = 20;
constexpr double hitMargin = 6;

} // namespace

bool hasHandle(HighlightShapeKind kind, Grip handle) {
    return handle != Grip::Picture && (handle != Grip::End1 || kind != HighlightShapeKind::circle);
}

QPointF handlePoint(const DraftShape& shape, Grip handle, const QRectF& imageRect) {
    const QPointF p1 = viewPoint(shape.p1, imageRect);
    const QPointF p2 = viewPoint(shape.p2, imageRect);
    if (handle == Grip::Move) {
        return shape.kind == HighlightShapeKind::circle ? p1 : (p1 + p2) / 2;
    }
    return handle == Grip::End1 ? p1 : p2;
}

double shapeAngle(const DraftShape& shape, const QRectF& imageRect) {
    const QPointF way = viewPoint(shape.p2, imageRect) - viewPoint(shape.p1, imageRect);
    return std::atan2(way.y(), way.x());
}

double handleRadius(Grip handle) {
    return handle == Grip::Move ? 12 : 10;
}

double handleHitRadius(Grip handle) {
    return handleRadius(handle) + hitMargin;
}

bool dragStartsOnHandle(const DraftShape& shape, const QPointF& point, const QSizeF& picture) {
    const std::array handles = {Grip::Move, Grip::End1, Grip::End2};
    return std::ranges::any_of(handles, [&](Grip handle) {
        const QPointF away = point - handlePoint(shape, handle, {{0, 0}, picture});
        return std::hypot(away.x(), away.y()) < exclusionRadius;
    });
}

} // namespace zelvra
