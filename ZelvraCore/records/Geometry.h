// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace zelvra {

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// Maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty).
struct AffineTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    bool operator==(const AffineTransform&) const = default;
    bool isIdentity() const { return *this == AffineTransform{}; }
    Point apply(Point point) const;
    /// The size of the upright rectangle around the mapped rectangle (0, 0, `size`).
    Size boundingSize(Size size) const;
};

} // namespace zelvra
