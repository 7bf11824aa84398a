// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/ClipWork.h"
#include "ZelvraCore/records/MovieIdentity.h"

#include <filesystem>
#include <optional>

namespace zelvra {

/// The movie that a document was made for, and where it was then.
struct MovieReference {
    std::filesystem::path file;
    MovieIdentity identity;
    bool operator==(const MovieReference&) const = default;
};

/// The contents of a document of annotations: what the journal keeps, what the user saves and opens, and what
/// the command line reads and prints. One form for all of them, a JSON object of at most 16 MiB in UTF-8:
///
///     {"version": 1,
///      "movie": {"path": "/games/match.mp4", "size": 4096, "digest": "00112233445566778899aabbccddeeff"},
///      "highlights": [{"id": "C5A1...", "at": 12.5, "duration": 3,
///                      "shape": {"id": "0E4B...", "kind": "circle", "p1": [0.5, 0.5], "p2": [0.6, 0.5],
///                                "color": "#0A84FF", "strokeWidthRatio": 0.004}}],
///      "range": {"from": 10, "to": 20}, "includeAudio": true,
///      "clips": [{"id": "77F0...", "start": 60, "end": 75, "highlights": []}],
///      "editing": "77F0...", "activeClip": "77F0...", "fullViewHighlights": [],
///      "journal": {"style": {"color": "#0A84FF", "radiusRatio": 0.06, "strokeWidthRatio": 0.004,
///                            "duration": 3},
///                  "exported": {"highlights": [], "range": {"from": 10, "to": 20}, "clips": []},
///                  "written": [{"clip": "77F0...", "path": "/games/out.mp4", "size": 2048}]}}
///
/// All members except "at", "start", "end" and those of "movie", "style" and "written" are optional.
/// - Unknown names are refused, because they are likely misspelt; but a document of a greater version is
///   reported as such, not by the names that are new in it.
/// - Times are seconds, or texts as on the command line ("01:15.5", "900/600"). "~900/600" is a time that was
///   rounded. A range or a clip may have "duration" instead of its end.
/// - Colours are "#RRGGBB", or [red, green, blue, alpha] from 0 to 1.
/// - Paths are texts, or {"hex": "2F..."} if their bytes are no UTF-8.
/// - An entry of "written" without "clip" is the export of the whole source.
/// - Highlights are sorted by time on reading. Those without "id" get a new one. No two of a list may have
/// the
///   same; nor may two clips.
/// - "journal" says that the journal has saved the document. Then times may be negative, and durations and
///   strokes are not checked: they are as the session had them.
struct AnnotationsDocument {
    /// `ofJournal`: all of it. Else `annotations` only; the other fields are not written.
    ClipWork work;
    bool ofJournal = false;
    std::optional<MovieReference> movie;

    /// What the command line also allows. A range with one end; with both it is `annotations.trimRange`.
    std::optional<CMTime> from;
    std::optional<CMTime> to;
    std::optional<bool> includeAudio;

    static constexpr int version = 1;
    static constexpr std::size_t mostBytes = std::size_t{16} << 20;
};

} // namespace zelvra
