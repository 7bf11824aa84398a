// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/MarkedClip.h"

#include <optional>

namespace zelvra {

/// The annotations as they were before one step of editing.
struct UndoSnapshot {
    std::vector<Highlight> highlights;
    std::optional<CMTimeRange> trimRange;
    std::vector<MarkedClip> markedClips;
    std::optional<Uuid> editingClipID;
};

} // namespace zelvra
