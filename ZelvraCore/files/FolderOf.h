// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace zelvra::files {

/// The folder that holds `file`; "." for a bare name.
inline std::filesystem::path folderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

} // namespace zelvra::files
