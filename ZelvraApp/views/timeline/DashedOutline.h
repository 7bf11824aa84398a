// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <qqml.h>

namespace zelvra {

/// A dashed line along the inside of a rounded rectangle. Main thread.
class DashedOutline : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
    Q_PROPERTY(double lineWidth MEMBER lineWidth_ NOTIFY changed)
    Q_PROPERTY(double dash MEMBER dash_ NOTIFY changed)
    Q_PROPERTY(double gap MEMBER gap_ NOTIFY changed)

public:
    explicit DashedOutline(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor color_ = Qt::black;
    double radius_ = 0;
    double lineWidth_ = 1;
    double dash_ = 4;
    double gap_ = 4;
};

} // namespace zelvra
