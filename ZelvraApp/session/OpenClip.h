// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/ClipWork.h"
#include "ZelvraApp/annotations/UndoHistory.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/MovieIdentity.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace zelvra {

/// A movie and the user's work on it, from when it is opened until the last operation on it ends.
///
/// Held by shared pointers: an operation that takes time keeps the clip that it was started for, and compares
/// it with the one that is open when it resumes. A movie that is closed and opened again is another clip.
/// Main thread, but for `asset`.
struct OpenClip {
    std::filesystem::path file;
    std::shared_ptr<const Asset> asset; ///< its index is read once for all that use it
    SourceInfo info;
    MovieIdentity identity; ///< by which the journal knows it
    ClipWork work;
    UndoHistory history;
    /// Work that the journal knows of an earlier time: offered until the user takes or refuses it, and kept
    /// together with what is done meanwhile.
    std::optional<ClipWork> leftWork;
    std::optional<ClipWork> restoredWork; ///< what was taken of it; offered again if that is undone
    bool journalHasAnswered = false;      ///< `leftWork` is all that it knows
};

} // namespace zelvra
