// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"

namespace zelvra {

/// How long a clip is that an in-point drops, in seconds, always more than 0: the user's choice, or 30.
double roughClipLengthSec(const PreferenceStore& store);

} // namespace zelvra
