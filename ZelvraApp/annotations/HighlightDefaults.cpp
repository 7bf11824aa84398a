// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/HighlightDefaults.h"

#include <cmath>

namespace zelvra {

namespace {

bool isClose(double a, double b, double tolerance) {
    return std::abs(a - b) < tolerance;
}

} // namespace

HighlightDefaults HighlightDefaults::factory() {
    return {.color = {10 / 255.0, 132 / 255.0, 1, 1},
            .radiusRatio = 0.06,
            .strokeWidthRatio = 0.004,
            .durationSec = 3};
}

bool operator==(const HighlightDefaults& a, const HighlightDefaults& b) {
    return isClose(a.radiusRatio, b.radiusRatio, 0.0001) &&
           isClose(a.strokeWidthRatio, b.strokeWidthRatio, 0.0001) &&
           isClose(a.durationSec, b.durationSec, 0.01) && colorsApproximatelyEqual(a.color, b.color);
}

bool colorsApproximatelyEqual(const Color& a, const Color& b) {
    constexpr double tolerance = 0.003;
    return isClose(a.red, b.red, tolerance) && isClose(a.green, b.green, tolerance) &&
           isClose(a.blue, b.blue, tolerance);
}

} // namespace zelvra
