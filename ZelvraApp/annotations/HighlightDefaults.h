// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

namespace zelvra {

/// The style that a new highlight starts from.
struct HighlightDefaults {
    Color color;
    double radiusRatio = 0;      ///< of a new circle, as a fraction of the picture's height
    double strokeWidthRatio = 0; ///< of the picture's height
    double durationSec = 0;      ///< of the freeze

    /// What a user who has never saved a style starts from.
    static HighlightDefaults factory();
};

/// Equal as far as a user can see: radius and stroke within 0.0001, duration within 0.01 s, colours
/// approximately. Not a test of whether a value has changed; see identical.
bool operator==(const HighlightDefaults& a, const HighlightDefaults& b);

/// Whether red, green and blue each differ by less than 0.003. Alpha does not count.
bool colorsApproximatelyEqual(const Color& a, const Color& b);

} // namespace zelvra
