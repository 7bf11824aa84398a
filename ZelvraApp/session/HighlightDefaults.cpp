// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/HighlightDefaults.h"

#include "ZelvraApp/session/Colors.h"
#include "ZelvraApp/session/HighlightDraft.h"

#include <cmath>

namespace zelvra {

HighlightDefaults HighlightDefaults::factory() {
    return {.color = HighlightDraft::defaultColor,
            .radiusRatio = 0.06,
            .strokeWidthRatio = 0.004,
            .durationSec = 3};
}

HighlightDefaults HighlightDefaults::loadFromUserDefaults(const PreferenceStore& store) {
    const HighlightDefaults standard = factory();
    const QString hex = store.read(preferences::defaultColorHex).value_or(hexString(standard.color));
    return {
        .color = colorFrom(hex).value_or(standard.color),
        .radiusRatio = store.read(preferences::defaultRadiusRatio).value_or(standard.radiusRatio),
        .strokeWidthRatio =
            store.read(preferences::defaultStrokeWidthRatio).value_or(standard.strokeWidthRatio),
        .durationSec = store.read(preferences::defaultDurationSec).value_or(standard.durationSec),
    };
}

void HighlightDefaults::saveTo(PreferenceStore& store) const {
    store.write(PreferenceStore::Changes{}
                    .set(preferences::defaultColorHex, hexString(color))
                    .set(preferences::defaultRadiusRatio, radiusRatio)
                    .set(preferences::defaultStrokeWidthRatio, strokeWidthRatio)
                    .set(preferences::defaultDurationSec, durationSec));
}

bool operator==(const HighlightDefaults& a, const HighlightDefaults& b) {
    const auto close = [](double x, double y, double tolerance) { return std::abs(x - y) < tolerance; };
    return close(a.radiusRatio, b.radiusRatio, 0.0001) &&
           close(a.strokeWidthRatio, b.strokeWidthRatio, 0.0001) &&
           close(a.durationSec, b.durationSec, 0.01) && colorsApproximatelyEqual(a.color, b.color);
}

} // namespace zelvra
