// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/HighlightDefaults.h"
#include "ZelvraApp/files/PreferenceStore.h"

namespace zelvra {

/// The saved style. A field that is absent, of the wrong type or unreadable has the factory's value.
HighlightDefaults loadFromUserDefaults(const PreferenceStore& store);

/// Saves all four fields in one step.
void save(const HighlightDefaults& style, PreferenceStore& store);

} // namespace zelvra
