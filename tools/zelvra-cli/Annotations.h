// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace zelvra::cli {

/// A stretch that becomes a movie of its own.
struct AnnotatedClip {
    CMTime start;
    CMTime end; ///< after `start`
    std::vector<Highlight> highlights;
};

/// What a file of annotations asks for. The form:
///
///     {"highlights": [{"at": 12.5, "duration": 3,
///                      "shape": {"kind": "circle", "p1": [0.5, 0.5], "p2": [0.6, 0.5],
///                                "color": "#0A84FF", "strokeWidthRatio": 0.004}}],
///      "range": {"from": 10, "to": 20}, "includeAudio": true,
///      "clips": [{"start": 60, "end": 75, "highlights": []}]}
///
/// Times are seconds, or texts as on the command line ("01:15.5", "900/600"). Everything but "at", "start"
/// and "end" may be left out. Names that are not known are refused, as they are misspelt ones.
struct Annotations {
    std::vector<Highlight> highlights;
    std::optional<CMTime> from;
    std::optional<CMTime> to;
    std::optional<bool> includeAudio;
    std::vector<AnnotatedClip> clips;
};

/// Reads the text of such a file. Throws BadRequest with one line that says what is wrong and where.
Annotations parseAnnotations(std::string_view json);

/// Reads such a file. Throws ZVError::fileNotFound, MediaError `unreadable` and `corrupt`.
Annotations readAnnotations(const std::filesystem::path& file);

} // namespace zelvra::cli
