// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/CMTimeRange.h"
#include "ZelvraCore/records/Highlight.h"
#include "ZelvraCore/records/MovieContainer.h"
#include "ZelvraCore/records/RenderResult.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>

namespace zelvra {

/// The engine's one entry point for exporting: writes the finished movie, in which the picture freezes on
/// each highlighted frame with its shape drawn over it and then plays on. The source's compressed video
/// passes through untouched if possible (H.264 and HEVC without rotation); only freezes are encoded then.

struct RenderOptions {
    /// The stretch of the source to export; absent means all of it. A part beyond the source's end is left
    /// out.
    std::optional<CMTimeRange> sourceRange;
    bool includeAudio = true;
    /// Called with 0...1 from the render's own threads; values never decrease. Must not throw.
    std::function<void(double)> progress;
    /// Called with one sentence if the export succeeds in another way than wanted, for example if the source
    /// must be re-encoded. Must not throw.
    std::function<void(const std::string&)> notice;
    /// Ends the render soon: it throws MediaError::cancelled and leaves no file.
    std::stop_token stop;
};

/// The container that an output's extension asks for, whatever its case: "mp4", "m4v"; all else is QuickTime.
MovieContainer containerFor(const std::filesystem::path& output);

/// Why `output` must not be written, as one line: it is the file `source` itself, by whatever path. `nullopt`
/// if it may be written.
std::optional<std::string> refusalOfOutput(const std::filesystem::path& source,
                                           const std::filesystem::path& output);

/// Renders `source` with its highlights to `output`, whose extension chooses the container (.mp4, .m4v, else
/// QuickTime; a plain copy of the source keeps the source's). Highlights may come in any order; those outside
/// the range are ignored. Blocks; any thread, several renders at once.
///
/// An `output` that exists is replaced when the new movie is complete, and not before. Throws ZVError,
/// MediaError; no file is left then, and an older output stays. An output that is the source is
/// refused (see refusalOfOutput), and so is one that exists and is no regular file.
RenderResult renderHighlights(const std::filesystem::path& source, std::span<const Highlight> highlights,
                              const std::filesystem::path& output, const RenderOptions& options = {});

/// The same for an opened movie, which saves reading its index again.
RenderResult renderHighlights(const Asset& source, std::span<const Highlight> highlights,
                              const std::filesystem::path& output, const RenderOptions& options = {});

} // namespace zelvra
