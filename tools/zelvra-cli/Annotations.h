// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace zelvra::cli {

/// A stretch that is exported as a movie of its own.
struct AnnotatedClip {
    CMTime start;
    CMTime end; ///< greater than `start`
    std::vector<Highlight> highlights;
};

/// The contents of a file of annotations. The form:
///
///     {"highlights": [{"at": 12.5, "duration": 3,
///                      "shape": {"kind": "circle", "p1": [0.5, 0.5], "p2": [0.6, 0.5],
///                                "color": "#0A84FF", "strokeWidthRatio": 0.004}}],
///      "range": {"from": 10, "to": 20}, "includeAudio": true,
///      "clips": [{"start": 60, "end": 75, "highlights": []}]}
///
/// Times are seconds, or texts as on the command line ("01:15.5", "900/600"). All members except "at",
/// "start" and "end" are optional. Unknown names are refused, because they are likely misspelt.
struct Annotations {
    std::vector<Highlight> highlights;
    std::optional<CMTime> from;
    std::optional<CMTime> to;
    std::optional<bool> includeAudio;
    std::vector<AnnotatedClip> clips;
};

/// Reads the text of such a file. Throws BadRequest with one line that names the mistake and its place.
Annotations parseAnnotations(std::string_view json);

/// Reads such a file. Throws ZVError::fileNotFound, MediaError `unreadable` and `corrupt`.
Annotations readAnnotations(const std::filesystem::path& file);

} // namespace zelvra::cli
