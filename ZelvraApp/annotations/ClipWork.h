// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/Annotations.h"
#include "ZelvraApp/annotations/HighlightDefaults.h"

#include <cstdint>
#include <filesystem>
#include <map>

namespace zelvra {

/// The annotations as the last export of each kind wrote them. Empty if nothing was exported.
struct ExportedWork {
    std::vector<Highlight> highlights; ///< of the export of the whole source or its trim
    std::optional<CMTimeRange> trimRange;
    std::vector<MarkedClip> markedClips;

    /// Notes an export of these annotations: of the marked clips if there are any, else of the highlights.
    void note(const Annotations& annotations);
};

/// A movie that an export has written.
struct WrittenMovie {
    std::filesystem::path file;
    std::uint64_t size = 0; ///< in bytes; a file of another size was written by someone else
    bool operator==(const WrittenMovie&) const = default;
};

/// Everything that belongs to the user's work on one movie and outlives the program's run.
struct ClipWork {
    Annotations annotations;
    HighlightDefaults defaults = HighlightDefaults::factory(); ///< style of the next new highlight
    ExportedWork exported;
    /// By marked clip's id; the nil id stands for the export of the whole source.
    std::map<Uuid, WrittenMovie> written;

    /// There are highlights or marked clips that no export has written as they are now.
    bool hasUnexportedWork() const;
    /// All highlights, those of marked clips included.
    std::size_t highlightCount() const;
};

/// Work of an earlier time together with what was done since, so that nothing of either is lost. An edit of a
/// marked clip that was left unsaved is saved back if another one has begun since.
ClipWork merged(const ClipWork& earlier, const ClipWork& later);

bool identical(const ExportedWork& a, const ExportedWork& b);
bool identical(const ClipWork& a, const ClipWork& b);

} // namespace zelvra
