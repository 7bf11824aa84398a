// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTimeRange.h"
#include "ZelvraCore/records/Highlight.h"

#include <vector>

namespace zelvra {

/// A stretch of a long recording that becomes a movie of its own.
struct MarkedClip {
    Uuid id;
    CMTimeRange range;                 ///< on the source's timeline
    std::vector<Highlight> highlights; ///< its own; times on the source's timeline too
};

} // namespace zelvra
