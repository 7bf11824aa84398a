// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zelvra::cli {

/// What the program does when its command line is understood. Each prints its result on standard output, and
/// throws what the engine throws.

/// Throws ZVError::fileNotFound for a file that is not there.
void requireFile(const std::filesystem::path& file);

void probeCommand(const std::filesystem::path& movie);

void frameCommand(const std::filesystem::path& movie, CMTime at, const std::filesystem::path& output);

struct ExportRequest {
    std::filesystem::path movie;
    std::filesystem::path output;
    std::optional<CMTime> from;
    std::optional<CMTime> to;
    bool includeAudio = true;
    std::vector<Highlight> highlights;
    bool quiet = false;
};
/// Adds what a file of annotations asks for; what the request says already about the range stays.
void addAnnotations(ExportRequest& request, const std::filesystem::path& file);
/// Throws BadRequest for a range that ends before it starts.
void exportCommand(const ExportRequest& request);

} // namespace zelvra::cli
