// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Geometry.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace zelvra {

/// Between fractions of a picture and logical pixels of the view that shows it in `imageRect`.

inline QPointF viewPoint(const Point& point, const QRectF& imageRect) {
    return {imageRect.x() + point.x * imageRect.width(), imageRect.y() + point.y * imageRect.height()};
}

/// Of an offset, or of a point relative to the picture's top left. (0, 0) if the picture has no size.
inline Point normalised(const QPointF& offset, const QSizeF& picture) {
    if (picture.isEmpty()) {
        return {};
    }
    return {offset.x() / picture.width(), offset.y() / picture.height()};
}

} // namespace zelvra
