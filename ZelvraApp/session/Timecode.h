// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

#include <QString>

namespace zelvra {

/// Minutes and seconds as the whole user interface shows them, without hours: "62:05.00". "--:--.--" for a
/// time that is no finite number.
QString timecode(const CMTime& time);

} // namespace zelvra
