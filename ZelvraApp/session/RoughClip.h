// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"

namespace zelvra {

/// The length of a clip that an in-point makes, in seconds, if the user has chosen none.
inline constexpr double standardClipLengthSec = 30;

/// The length that the user has chosen, or the standard one if none or one that is not above 0 is stored.
double roughClipLengthSec(const PreferenceStore& store);

} // namespace zelvra
