// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"
#include "ZelvraCore/OutputNames.h"

#include <filesystem>
#include <optional>

namespace zelvra {

/// How a mode is kept in the preferences.
QString rawValue(OutputLocationMode mode);

/// Where exported movies go and what they are called. Read again from the preferences for each export.
struct OutputLocation {
    OutputLocationMode mode = OutputLocationMode::subfolder;
    QString subfolderName = QString::fromUtf8(standardSubfolderName);
    QString customFolderPath = {}; ///< absolute; empty if none was chosen
    bool includeAudio = true;

    static OutputLocation loadFromUserDefaults(const PreferenceStore& store);

    /// The file that an export of `source` writes: of the whole clip, or of the marked clip of that number
    /// (from 1). Looks at no file and makes none; the export replaces a file of that name.
    std::filesystem::path resolveOutputURL(const std::filesystem::path& source,
                                           std::optional<int> clipIndex = {}) const;
};

} // namespace zelvra
