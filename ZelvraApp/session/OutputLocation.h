// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"

#include <array>
#include <filesystem>
#include <optional>

namespace zelvra {

/// Which folder exported movies go to.
enum class OutputLocationMode {
    sameAsSource, ///< the source's own
    subfolder,    ///< one inside the source's
    custom,       ///< one chosen folder
};

/// In the order in which the settings offer them.
inline constexpr std::array allOutputLocationModes{OutputLocationMode::sameAsSource,
                                                   OutputLocationMode::subfolder, OutputLocationMode::custom};

/// "sameAsSource", "subfolder" or "custom": how a mode is kept in the preferences.
QString rawValue(OutputLocationMode mode);
/// The mode of that raw value; nothing for any other text.
std::optional<OutputLocationMode> outputLocationMode(const QString& rawValue);

/// Where exported movies go and what they are called. Made afresh from the preferences for each export.
struct OutputLocation {
    OutputLocationMode mode = OutputLocationMode::subfolder;
    QString subfolderName = QStringLiteral("highlighted");
    QString customFolderPath = {}; ///< absolute; empty where none was chosen
    bool includeAudio = true;

    static OutputLocation loadFromUserDefaults(const PreferenceStore& store);

    /// The file that an export of `source` writes: of the whole clip, or of the marked clip of that number
    /// (from 1). Looks at no file and makes none; a file of that name is written over by the export.
    std::filesystem::path resolveOutputURL(const std::filesystem::path& source,
                                           std::optional<int> clipIndex = {}) const;
};

} // namespace zelvra
