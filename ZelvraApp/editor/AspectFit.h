// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QRectF>
#include <QSizeF>

namespace zelvra {

/// The largest rectangle of the image's shape that fits the container, in its middle; the whole container
/// if either has no size. Relative to the container's top left.
inline QRectF aspectFitRect(const QSizeF& image, const QSizeF& container) {
    if (image.isEmpty() || container.isEmpty()) {
        return {{0, 0}, container};
    }
    const double shape = image.width() / image.height();
    if (container.width() / container.height() < shape) {
        const double height = container.width() / shape;
        return {0, (container.height() - height) / 2, container.width(), height};
    }
    const double width = shape * container.height();
    return {(container.width() - width) / 2, 0, width, container.height()};
}

} // namespace zelvra
