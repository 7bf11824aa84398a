// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/OutputNames.h"

#include <algorithm>

namespace zelvra {

namespace {

std::string trimmed(const std::string& text) {
    constexpr const char* blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::filesystem::path folderFor(const OutputFolder& folder, const std::filesystem::path& sourceFolder) {
    switch (folder.mode) {
    case OutputLocationMode::sameAsSource: return sourceFolder;
    case OutputLocationMode::subfolder: {
        const std::string name = trimmed(folder.subfolderName);
        // A name that begins with a slash is still one inside the source's folder.
        return sourceFolder / (name.empty() ? std::filesystem::path(standardSubfolderName)
                                            : std::filesystem::path(name).relative_path());
    }
    case OutputLocationMode::custom: {
        const std::string path = trimmed(folder.customFolderPath);
        return path.empty() ? sourceFolder : std::filesystem::path(path);
    }
    }
    return sourceFolder;
}

} // namespace

std::string_view modeName(OutputLocationMode mode) {
    switch (mode) {
    case OutputLocationMode::sameAsSource: return "sameAsSource";
    case OutputLocationMode::subfolder: return "subfolder";
    case OutputLocationMode::custom: return "custom";
    }
    return {};
}

std::optional<OutputLocationMode> modeOfName(std::string_view name) {
    const auto mode = std::ranges::find(allOutputLocationModes, name, modeName);
    return mode != allOutputLocationModes.end() ? std::optional(*mode) : std::nullopt;
}

std::filesystem::path outputPath(const OutputFolder& folder, const std::filesystem::path& source,
                                 std::optional<int> clipNumber) {
    std::string name = source.stem().string();
    if (clipNumber) {
        const std::string digits = std::to_string(*clipNumber);
        name += "_clip_" + std::string(digits.size() < 2 ? 1 : 0, '0') + digits;
    }
    const std::string extension = source.extension().string();
    name += "_highlighted." + (extension.empty() ? extension : extension.substr(1));
    return folderFor(folder, source.parent_path()) / name;
}

} // namespace zelvra
