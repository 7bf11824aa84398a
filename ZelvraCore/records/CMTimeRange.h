// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

namespace zelvra {

/// A stretch of a media timeline: from `start`, `duration` long. `end()` itself is not part of it.
struct CMTimeRange {
    CMTime start;
    CMTime duration;

    static CMTimeRange fromStartToEnd(const CMTime& start, const CMTime& end);

    CMTime end() const { return start + duration; }
};

} // namespace zelvra
