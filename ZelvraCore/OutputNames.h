// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace zelvra {

/// Where exported movies go and what they are called: the one rule of the application and the command line.
/// Pure functions of values, any thread: they look at no file and make none.

/// Which folder exported movies go to.
enum class OutputLocationMode {
    sameAsSource, ///< the source's own
    subfolder,    ///< one inside the source's
    custom,       ///< one chosen folder
};

/// In the order in which the settings offer them.
inline constexpr std::array allOutputLocationModes{OutputLocationMode::sameAsSource,
                                                   OutputLocationMode::subfolder, OutputLocationMode::custom};

/// "sameAsSource", "subfolder" or "custom": how preferences and the command line spell a mode.
std::string_view modeName(OutputLocationMode mode);
/// The mode of that name; `nullopt` for any other text.
std::optional<OutputLocationMode> modeOfName(std::string_view name);

inline constexpr std::string_view standardSubfolderName = "highlighted";

/// The texts are as a user gave them: spaces and tabs at both ends do not count.
struct OutputFolder {
    OutputLocationMode mode = OutputLocationMode::subfolder;
    std::string subfolderName{standardSubfolderName}; ///< the standard name if empty
    std::string customFolderPath = {};                ///< absolute; the source's own folder if empty
};

/// The file that an export of `source` writes: of the whole source, or of its marked clip with that number
/// (from 1). For "game.mp4" these are "game_highlighted.mp4" and "game_clip_01_highlighted.mp4".
std::filesystem::path outputPath(const OutputFolder& folder, const std::filesystem::path& source,
                                 std::optional<int> clipNumber = {});

} // namespace zelvra
