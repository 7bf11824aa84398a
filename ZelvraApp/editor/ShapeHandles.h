// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/HighlightDraft.h"

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <qqml.h>

namespace zelvra {

/// What a drag on the canvas holds: the picture, to draw a new shape, or one of the shape's handles. In a
/// namespace of its own so that QML can name it: Grip.Move.
namespace grip {
Q_NAMESPACE
QML_NAMED_ELEMENT(Grip)
enum class Grip { Picture, Move, End1, End2 };
Q_ENUM_NS(Grip)
} // namespace grip
using grip::Grip;

/// A circle has one end handle, on its rim; other shapes have one at each anchor.
bool hasHandle(HighlightShapeKind kind, Grip handle);

/// Where that handle is, in the coordinates in which the picture fills `imageRect`.
QPointF handlePoint(const DraftShape& shape, Grip handle, const QRectF& imageRect);

/// Direction from the first to the second anchor on the screen, in radians, clockwise from the right.
double shapeAngle(const DraftShape& shape, const QRectF& imageRect);

/// The visible disc, and the larger one that takes the pointer.
double handleRadius(Grip handle);
double handleHitRadius(Grip handle);

/// Whether a drag over a picture of that size is too near a handle to mean a new shape. `point` is relative
/// to the picture's top left. Reaches a little beyond what the handles themselves take.
bool dragStartsOnHandle(const DraftShape& shape, const QPointF& point, const QSizeF& picture);

} // namespace zelvra
