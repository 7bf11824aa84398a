// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/controls/DiscShadow.h"

#include <QPainter>
#include <QRadialGradient>

namespace zelvra {

namespace {

constexpr double blur = 2;
constexpr float opacity = 0.35F;
constexpr QPointF offset(0, 1);

} // namespace

void paintDiscShadow(QPainter& painter, const QPointF& center, double radius) {
    const double reach = radius + blur;
    QRadialGradient shade(center + offset, reach);
    shade.setColorAt((radius - blur) / reach, QColor::fromRgbF(0, 0, 0, opacity));
    shade.setColorAt(radius / reach, QColor::fromRgbF(0, 0, 0, opacity / 2));
    shade.setColorAt(1, Qt::transparent);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawEllipse(center + offset, reach, reach);
}

} // namespace zelvra
