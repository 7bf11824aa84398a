// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace zelvra {

/// Notes a file or folder in the desktop's own list of recently used files, which file managers and open
/// panels show ("recently-used.xbel" in the user's data folder, as the Desktop Bookmark Specification says).
///
/// Does nothing if there is no such list, or if it cannot be written. Any thread; reads and writes the whole
/// list.
void noteRecentlyUsed(const std::filesystem::path& path);

} // namespace zelvra
