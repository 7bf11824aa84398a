// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

namespace zelvra {

/// The ticks a second of every time that is made from seconds: dragged edges, typed and default durations.
inline constexpr std::int32_t sessionTimescale = 600;

inline CMTime sessionTime(double seconds) {
    return CMTime::fromSeconds(seconds, sessionTimescale);
}

/// No trim and no marked clip is shorter: 0.1 s.
inline constexpr double minimumLengthSec = 0.1;
inline constexpr CMTime minimumLength{60, sessionTimescale};

} // namespace zelvra
