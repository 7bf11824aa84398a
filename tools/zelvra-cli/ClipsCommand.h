// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace zelvra::cli {

struct ClipsRequest {
    std::filesystem::path movie;
    std::filesystem::path annotations;
    std::optional<std::string> mode;      ///< "sameAsSource", "subfolder" or "custom"
    std::optional<std::string> folder;    ///< for "custom", and chooses it where no mode is said
    std::optional<std::string> subfolder; ///< its name for "subfolder"
    bool quiet = false;
};

/// Exports every clip that the annotations mark as a movie of its own, with names and places as in the
/// application: through a session of its own, whose preferences go when it ends. Prints the files written.
/// Stops at the first clip that fails; throws BadRequest, and what went wrong otherwise as one line.
void clipsCommand(const ClipsRequest& request);

} // namespace zelvra::cli
