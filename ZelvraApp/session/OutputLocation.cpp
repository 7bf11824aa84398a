// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/OutputLocation.h"

#include "ZelvraApp/files/FilePaths.h"

namespace zelvra {

QString rawValue(OutputLocationMode mode) {
    return QString::fromUtf8(modeName(mode));
}

OutputLocation OutputLocation::loadFromUserDefaults(const PreferenceStore& store) {
    OutputLocation location;
    const QString mode = store.read(preferences::outputMode).value_or(QString());
    location.mode = modeOfName(mode.toStdString()).value_or(location.mode);
    location.subfolderName = store.read(preferences::outputSubfolderName).value_or(location.subfolderName);
    location.customFolderPath =
        store.read(preferences::outputCustomFolderPath).value_or(location.customFolderPath);
    location.includeAudio = store.read(preferences::outputIncludeAudio).value_or(location.includeAudio);
    return location;
}

std::filesystem::path OutputLocation::resolveOutputURL(const std::filesystem::path& source,
                                                       std::optional<int> clipIndex) const {
    const OutputFolder folder{.mode = mode,
                              .subfolderName = pathOf(subfolderName).string(),
                              .customFolderPath = pathOf(customFolderPath).string()};
    return outputPath(folder, source, clipIndex);
}

} // namespace zelvra
