// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/Geometry.h"
#include "ZelvraCore/records/Uuid.h"

#include <optional>
#include <string_view>

namespace zelvra {

/// The figure that a highlight draws. Serialised by its raw string.
enum class HighlightShapeKind { circle, arrow, rectangle };

/// "circle", "arrow" or "rectangle".
std::string_view rawValue(HighlightShapeKind kind);
/// The kind of that raw string (exact, lower case); `nullopt` for any other text.
std::optional<HighlightShapeKind> highlightShapeKind(std::string_view rawValue);

/// Red, green, blue and alpha from 0 to 1, not premultiplied, in the sRGB colour space.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    bool operator==(const Color&) const = default;
};

/// One figure over a picture. `p1` and `p2` are fractions of the upright displayed picture, (0, 0) at its top
/// left; nothing clamps them. A circle has its centre at `p1` and passes through `p2` (round in pixels,
/// whatever the picture's shape); an arrow runs from `p1` to its tip at `p2`; a rectangle has them as
/// opposite corners.
struct HighlightShape {
    Uuid id;
    HighlightShapeKind kind = HighlightShapeKind::circle;
    Point p1;
    Point p2;
    Color strokeColor;
    double strokeWidthRatio = 0; ///< of the picture's height
};

/// One annotation: at `timestamp` of the source's timeline the picture freezes for `duration` with `shape`
/// over it.
struct Highlight {
    Uuid id;
    CMTime timestamp;
    CMTime duration;
    HighlightShape shape;
};

} // namespace zelvra
