// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/OutputLocation.h"

#include "ZelvraApp/files/FilePaths.h"

#include <algorithm>
#include <string>

namespace zelvra {

namespace {

/// Without spaces and tabs at both ends.
QString trimmed(const QString& text) {
    const auto blank = [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); };
    const auto first = std::ranges::find_if_not(text, blank);
    auto last = text.end();
    while (last != first && blank(*(last - 1))) {
        --last;
    }
    return QString(first, last - first);
}

std::filesystem::path folderFor(const OutputLocation& location, const std::filesystem::path& sourceFolder) {
    switch (location.mode) {
    case OutputLocationMode::sameAsSource: return sourceFolder;
    case OutputLocationMode::subfolder: {
        const QString name = trimmed(location.subfolderName);
        // A name that begins with a slash is still one inside the source's folder.
        return sourceFolder /
               (name.isEmpty() ? std::filesystem::path("highlighted") : pathOf(name).relative_path());
    }
    case OutputLocationMode::custom: {
        const QString path = trimmed(location.customFolderPath);
        return path.isEmpty() ? sourceFolder : pathOf(path);
    }
    }
    return sourceFolder;
}

} // namespace

QString rawValue(OutputLocationMode mode) {
    switch (mode) {
    case OutputLocationMode::sameAsSource: return QStringLiteral("sameAsSource");
    case OutputLocationMode::subfolder: return QStringLiteral("subfolder");
    case OutputLocationMode::custom: return QStringLiteral("custom");
    }
    return {};
}

std::optional<OutputLocationMode> outputLocationMode(const QString& text) {
    const auto mode = std::ranges::find(allOutputLocationModes, text, [](auto m) { return rawValue(m); });
    return mode != allOutputLocationModes.end() ? std::optional(*mode) : std::nullopt;
}

OutputLocation OutputLocation::loadFromUserDefaults(const PreferenceStore& store) {
    OutputLocation location;
    location.mode =
        outputLocationMode(store.read(preferences::outputMode).value_or(QString())).value_or(location.mode);
    location.subfolderName = store.read(preferences::outputSubfolderName).value_or(location.subfolderName);
    location.customFolderPath =
        store.read(preferences::outputCustomFolderPath).value_or(location.customFolderPath);
    location.includeAudio = store.read(preferences::outputIncludeAudio).value_or(location.includeAudio);
    return location;
}

std::filesystem::path OutputLocation::resolveOutputURL(const std::filesystem::path& source,
                                                       std::optional<int> clipIndex) const {
    std::string name = source.stem().string();
    if (clipIndex) {
        name += "_clip_" + QStringLiteral("%1").arg(*clipIndex, 2, 10, QLatin1Char('0')).toStdString();
    }
    const std::string extension = source.extension().string();
    name += "_highlighted." + (extension.empty() ? extension : extension.substr(1));
    return folderFor(*this, source.parent_path()) / name;
}

} // namespace zelvra
