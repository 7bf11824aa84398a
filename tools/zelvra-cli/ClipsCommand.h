// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/OutputNames.h"

#include <filesystem>
#include <optional>
#include <string>

namespace zelvra::cli {

struct ClipsRequest {
    std::filesystem::path movie;
    std::filesystem::path annotations;
    std::optional<OutputLocationMode> mode; ///< absent: custom if there is a folder, else subfolder
    std::optional<std::string> folder;      ///< for the custom mode
    std::optional<std::string> subfolder;   ///< its name for the subfolder mode
    bool quiet = false;
};

/// Exports every clip that the annotations mark as a movie of its own, with names and places as in the
/// application. Prints the files written. Stops at the first clip that fails and keeps those before it;
/// throws BadRequest, and otherwise what went wrong as one line.
void clipsCommand(const ClipsRequest& request);

} // namespace zelvra::cli
