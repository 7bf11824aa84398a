// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QPainter;
class QPointF;

namespace zelvra {

/// Paints the shadow of a disc that is to be drawn over it at `center`: blurred by two pixels, one pixel
/// lower. Leaves the painter without a pen, and with a brush of its own.
void paintDiscShadow(QPainter& painter, const QPointF& center, double radius);

} // namespace zelvra
