// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/SavedDefaults.h"

#include "ZelvraApp/session/Colors.h"

namespace zelvra {

HighlightDefaults loadFromUserDefaults(const PreferenceStore& store) {
    const HighlightDefaults standard = HighlightDefaults::factory();
    const QString hex = store.read(preferences::defaultColorHex).value_or(hexString(standard.color));
    return {
        .color = colorFrom(hex).value_or(standard.color),
        .radiusRatio = store.read(preferences::defaultRadiusRatio).value_or(standard.radiusRatio),
        .strokeWidthRatio =
            store.read(preferences::defaultStrokeWidthRatio).value_or(standard.strokeWidthRatio),
        .durationSec = store.read(preferences::defaultDurationSec).value_or(standard.durationSec),
    };
}

void save(const HighlightDefaults& style, PreferenceStore& store) {
    store.write(PreferenceStore::Changes{}
                    .set(preferences::defaultColorHex, hexString(style.color))
                    .set(preferences::defaultRadiusRatio, style.radiusRatio)
                    .set(preferences::defaultStrokeWidthRatio, style.strokeWidthRatio)
                    .set(preferences::defaultDurationSec, style.durationSec));
}

} // namespace zelvra
