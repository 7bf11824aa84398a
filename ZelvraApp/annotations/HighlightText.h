// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/BadRequest.h"
#include "ZelvraCore/records/Highlight.h"

#include <optional>
#include <string_view>

namespace zelvra {

/// A highlight as the user requests it. The defaults are the program's own style: a blue circle of radius
/// 0.06 (of the picture's height) at the centre, stroke 0.004, for 3 s.
struct HighlightRequest {
    std::optional<CMTime> at;
    CMTime duration{3, 1};
    HighlightShapeKind kind = HighlightShapeKind::circle;
    std::optional<Point> p1;
    std::optional<Point> p2;
    Color color{10 / 255.0, 132 / 255.0, 1, 1};
    double strokeWidthRatio = 0.004;
    std::optional<Uuid> id; ///< absent: a new one
    std::optional<Uuid> shapeId;
};

/// Fills in missing points and checks the rest. Throws BadRequest: no time, no positive duration, only one
/// end of an arrow or rectangle, a stroke below zero.
Highlight makeHighlight(const HighlightRequest& request);

/// Reads "at=12.5,duration=2,kind=arrow,p1=0.2:0.4,p2=0.5:0.5,color=#FFCC00,stroke=0.006": names in any
/// order, each at most once, all but `at` optional. Throws BadRequest, ZVError::invalidTimestamp.
Highlight parseHighlight(std::string_view text);

/// The three parts of "#RRGGBB". Throws BadRequest.
Color parseColor(std::string_view text);
/// Throws BadRequest for an unknown kind.
HighlightShapeKind parseKind(std::string_view text);

} // namespace zelvra
