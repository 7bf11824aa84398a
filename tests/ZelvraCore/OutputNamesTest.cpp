// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/OutputNames.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

struct Place {
    OutputFolder folder;
    std::filesystem::path source;
    std::optional<int> clip;
    std::filesystem::path output;
};

TEST(OutputNames, ChooseTheFolderAndNumberTheClips) {
    const auto subfolder = [](const char* name) {
        return OutputFolder{.mode = OutputLocationMode::subfolder, .subfolderName = name};
    };
    const auto custom = [](const char* path) {
        return OutputFolder{.mode = OutputLocationMode::custom, .customFolderPath = path};
    };
    const OutputFolder same{.mode = OutputLocationMode::sameAsSource};
    const Place places[] = {
        {{}, "/clips/game.mov", {}, "/clips/highlighted/game_highlighted.mov"},
        {subfolder(" \t "), "/clips/game.mov", 3, "/clips/highlighted/game_clip_03_highlighted.mov"},
        {subfolder(" my clips\t"), "/clips/game.mov", 105, "/clips/my clips/game_clip_105_highlighted.mov"},
        {subfolder("/etc"), "/clips/game.mov", {}, "/clips/etc/game_highlighted.mov"},
        {subfolder("a/b"), "/clips/game.mov", {}, "/clips/a/b/game_highlighted.mov"},
        {same, "/clips/game.final.MOV", {}, "/clips/game.final_highlighted.MOV"},
        {same, "/clips/game", 1, "/clips/game_clip_01_highlighted."},
        {custom(" /exports "), "/clips/game.mov", 12, "/exports/game_clip_12_highlighted.mov"},
        {custom("  "), "/clips/game.mov", {}, "/clips/game_highlighted.mov"},
    };
    for (const Place& place : places) {
        EXPECT_EQ(outputPath(place.folder, place.source, place.clip), place.output);
    }
}

} // namespace
} // namespace zelvra
