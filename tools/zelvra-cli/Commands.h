// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zelvra::cli {

/// The commands of the program, after its command line is parsed. Each prints its result on standard output
/// and throws the engine's exceptions.

/// Throws ZVError::fileNotFound if the file does not exist.
void requireFile(const std::filesystem::path& file);

/// Throws MediaError::refused if `output` is a file that the command reads, by whatever path.
void requireOutputApart(const std::filesystem::path& output, const std::filesystem::path& movie,
                        const std::filesystem::path& annotations = {});

void probeCommand(const std::filesystem::path& movie);

void frameCommand(const std::filesystem::path& movie, CMTime at, const std::filesystem::path& output);

/// Prints what the journal knows of a movie, as a document of annotations. Throws std::runtime_error with one
/// line if it knows nothing.
void annotationsCommand(const std::filesystem::path& movie);

struct ExportRequest {
    std::filesystem::path movie;
    std::filesystem::path output;
    std::filesystem::path annotations; ///< empty: none
    std::optional<CMTime> from;
    std::optional<CMTime> to;
    bool includeAudio = true;
    std::vector<Highlight> highlights;
    bool quiet = false;
    std::vector<std::string> notices; ///< sentences for the user, printed before the export
};
/// Adds the contents of its file of annotations. A range that the request already has is kept.
void addAnnotations(ExportRequest& request);
/// Throws BadRequest for a range that ends before it starts.
void exportCommand(const ExportRequest& request);

} // namespace zelvra::cli
