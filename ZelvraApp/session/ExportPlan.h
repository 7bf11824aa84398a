// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/ClipWork.h"
#include "ZelvraApp/session/OutputLocation.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace zelvra {

/// The id that stands for the export of a whole source, beside those of its marked clips.
inline constexpr Uuid wholeSource{};

/// One movie of an export.
struct ExportJob {
    Uuid clipID = wholeSource;
    std::vector<Highlight> highlights;
    std::optional<CMTimeRange> range;
    std::filesystem::path output;
};

/// The movies that an export of this work writes: one for each marked clip, or without any the trimmed source
/// with its highlights.
///
/// No output replaces a file that was not written for the same clip: it takes the next free name, "game
/// 2.mov". A file counts as written by us if `work.written` names it and it still has that size. Looks at the
/// file system and writes nothing; may block. Any thread.
std::vector<ExportJob> planExport(const std::filesystem::path& source, const ClipWork& work,
                                  const OutputLocation& location);

} // namespace zelvra
