// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/OutputLocation.h"

#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

struct Place {
    OutputLocation location;
    std::filesystem::path source;
    std::optional<int> clip;
    std::filesystem::path output;
};

TEST(OutputLocation, NamesFoldersAndFiles) {
    const auto subfolder = [](const char* name) {
        return OutputLocation{.mode = OutputLocationMode::subfolder,
                              .subfolderName = QString::fromUtf8(name)};
    };
    const auto custom = [](const char* path) {
        return OutputLocation{.mode = OutputLocationMode::custom,
                              .customFolderPath = QString::fromUtf8(path)};
    };
    const OutputLocation same{.mode = OutputLocationMode::sameAsSource};
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
        {custom("/Spiele/Täglich 🏀"),
         "/clips/“a” \xff.mov",
         {},
         "/Spiele/Täglich 🏀/“a” \xff_highlighted.mov"},
    };
    for (const Place& place : places) {
        EXPECT_EQ(place.location.resolveOutputURL(place.source, place.clip), place.output);
    }
}

TEST(OutputLocation, FallsBackValueByValue) {
    const test::TemporaryFolder folder;
    PreferenceStore store(folder / "preferences.json");
    const auto isStandard = [&] {
        const OutputLocation read = OutputLocation::loadFromUserDefaults(store);
        return read.mode == OutputLocationMode::subfolder && read.subfolderName == "highlighted" &&
               read.customFolderPath.isEmpty() && read.includeAudio;
    };
    EXPECT_TRUE(isStandard());
    constexpr PreferenceKey<double> audioAsNumber{"zvOutput.includeAudio"};
    store.write(PreferenceStore::Changes{}
                    .set(preferences::outputMode, QStringLiteral("Custom"))
                    .set(audioAsNumber, 0.0));
    EXPECT_TRUE(isStandard());
    for (const OutputLocationMode mode : allOutputLocationModes) {
        store.write(preferences::outputMode, rawValue(mode));
        EXPECT_EQ(OutputLocation::loadFromUserDefaults(store).mode, mode);
    }
    store.write(preferences::outputIncludeAudio, false);
    EXPECT_FALSE(OutputLocation::loadFromUserDefaults(store).includeAudio);
}

} // namespace
} // namespace zelvra
