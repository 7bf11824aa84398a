// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <vector>

namespace zelvra {

/// What is at a path. Looks at the file system, may block. Any thread.
enum class FileKind { missing, folder, other };
FileKind kindOf(const std::filesystem::path& path);

/// A folder's movies by name (.mov, .mp4, .m4v in either case), in natural order, in which they are worked
/// through. None if the folder cannot be read. May block. Any thread.
std::vector<std::filesystem::path> clipsIn(const std::filesystem::path& folder);

} // namespace zelvra
