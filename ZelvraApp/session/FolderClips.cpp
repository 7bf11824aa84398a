// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/FolderClips.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/files/NaturalOrder.h"

#include <algorithm>

namespace zelvra {

namespace {

bool isMovieName(const std::filesystem::path& path) {
    const QString extension = textOf(path.extension()).toLower();
    return extension == QLatin1String(".mov") || extension == QLatin1String(".mp4") ||
           extension == QLatin1String(".m4v");
}

} // namespace

FileKind kindOf(const std::filesystem::path& path) {
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::status(path, unknown);
    if (!std::filesystem::exists(status)) {
        return FileKind::missing;
    }
    return std::filesystem::is_directory(status) ? FileKind::folder : FileKind::other;
}

std::vector<std::filesystem::path> clipsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> clips;
    std::error_code unreadable;
    std::filesystem::directory_iterator entry(folder, unreadable);
    for (; !unreadable && entry != std::filesystem::directory_iterator(); entry.increment(unreadable)) {
        if (isMovieName(entry->path())) {
            clips.push_back(entry->path());
        }
    }
    // A folder is listed in no fixed order. Names that are naturally equal must not change places each time.
    std::ranges::sort(clips);
    sortInNaturalOrder(clips);
    return clips;
}

} // namespace zelvra
