// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/editor/ShapeHandles.h"

#include <QColor>
#include <QQuickPaintedItem>
#include <qqml.h>

namespace zelvra {

/// One handle of a shape: a small disc with a sign and a shadow. The item is as large as the round area that
/// takes the pointer.
class HandleView : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Move: the shape's colour with a white sign; else white with a sign in the shape's colour.
    Q_PROPERTY(zelvra::grip::Grip grip READ grip WRITE setGrip NOTIFY gripChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor)
    /// The direction of an end's sign, in radians, clockwise from the right.
    Q_PROPERTY(double angle READ angle WRITE setAngle)

public:
    explicit HandleView(QQuickItem* parent = nullptr);

    Grip grip() const { return grip_; }
    void setGrip(Grip grip);
    const QColor& color() const { return color_; }
    void setColor(const QColor& color);
    double angle() const { return angle_; }
    void setAngle(double angle);

    bool contains(const QPointF& point) const override;
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void gripChanged();

private:
    Grip grip_ = Grip::Move;
    QColor color_ = Qt::black;
    double angle_ = 0;
};

} // namespace zelvra
