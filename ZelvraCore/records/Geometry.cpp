// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/Geometry.h"

#include <cmath>

namespace zelvra {

Point AffineTransform::apply(Point point) const {
    return {a * point.x + c * point.y + tx, b * point.x + d * point.y + ty};
}

Size AffineTransform::boundingSize(Size size) const {
    return {std::abs(a) * size.width + std::abs(c) * size.height,
            std::abs(b) * size.width + std::abs(d) * size.height};
}

} // namespace zelvra
