// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/HandleView.h"

#include "ZelvraApp/controls/DiscShadow.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>
#include <utility>

namespace zelvra {

namespace {

constexpr double borderWidth = 2;

constexpr double degrees = 180 / std::numbers::pi;

/// To the left and to the right, `half` far, with open heads.
QPainterPath twoHeadedArrow(double half, double head) {
    QPainterPath path(QPointF(-half, 0));
    path.lineTo(half, 0);
    for (const double side : {-1.0, 1.0}) {
        path.moveTo(side * (half - head), -head);
        path.lineTo(side * half, 0);
        path.lineTo(side * (half - head), head);
    }
    return path;
}

void drawSign(QPainter& painter, Grip grip, const QColor& color, double angle) {
    painter.setBrush(Qt::NoBrush);
    if (grip == Grip::Move) {
        const QPainterPath across = twoHeadedArrow(6, 2);
        painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(across);
        painter.rotate(90);
        painter.drawPath(across);
        return;
    }
    painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.rotate(angle * degrees);
    painter.drawPath(twoHeadedArrow(5, 2.5));
}

} // namespace

HandleView::HandleView(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(2 * handleHitRadius(grip_), 2 * handleHitRadius(grip_));
}

void HandleView::setGrip(Grip grip) {
    grip_ = grip;
    setImplicitSize(2 * handleHitRadius(grip), 2 * handleHitRadius(grip));
    update();
    Q_EMIT gripChanged();
}

void HandleView::setColor(const QColor& color) {
    if (std::exchange(color_, color) != color) {
        update();
    }
}

void HandleView::setAngle(double angle) {
    if (std::exchange(angle_, angle) != angle && grip_ != Grip::Move) {
        update();
    }
}

bool HandleView::contains(const QPointF& point) const {
    const QPointF away = point - boundingRect().center();
    return std::hypot(away.x(), away.y()) <= handleHitRadius(grip_);
}

void HandleView::paint(QPainter* painter) {
    const bool moves = grip_ == Grip::Move;
    const double radius = handleRadius(grip_);
    painter->translate(boundingRect().center());
    paintDiscShadow(*painter, QPointF(), radius);
    const double middleOfBorder = radius - borderWidth / 2;
    painter->setBrush(moves ? color_ : QColor(Qt::white));
    painter->setPen(QPen(moves ? QColor(Qt::white) : color_, borderWidth));
    painter->drawEllipse(QPointF(), middleOfBorder, middleOfBorder);
    drawSign(*painter, grip_, moves ? QColor(Qt::white) : color_, angle_);
}

} // namespace zelvra
