// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/timeline/DashedOutline.h"

#include <QPainter>

namespace zelvra {

DashedOutline::DashedOutline(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &DashedOutline::changed, this, [this] { update(); });
}

void DashedOutline::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    QPen pen(color_, lineWidth_, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({dash_ / lineWidth_, gap_ / lineWidth_}); // in units of the pen's width
    painter->setPen(pen);
    const double inset = lineWidth_ / 2;
    painter->drawRoundedRect(boundingRect().adjusted(inset, inset, -inset, -inset), radius_ - inset,
                             radius_ - inset);
}

} // namespace zelvra
