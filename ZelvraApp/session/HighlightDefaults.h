// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"
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

    /// The saved style. A field that is absent, of the wrong type or unreadable has the factory's value.
    static HighlightDefaults loadFromUserDefaults(const PreferenceStore& store);

    /// Saves all four fields in one step.
    void saveTo(PreferenceStore& store) const;
};

/// Equal as far as a user can see: radius and stroke within 0.0001, duration within 0.01 s, colours
/// approximately. Not a test of whether a value has changed; see identical.
bool operator==(const HighlightDefaults& a, const HighlightDefaults& b);

} // namespace zelvra
