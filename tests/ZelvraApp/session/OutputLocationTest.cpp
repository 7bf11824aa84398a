// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/OutputLocation.h"

#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

TEST(OutputLocation, KeepsNamesInEveryLanguageAndThoseThatAreNoText) {
    const OutputLocation custom{.mode = OutputLocationMode::custom,
                                .customFolderPath = QStringLiteral("/Spiele/Täglich 🏀")};
    EXPECT_EQ(custom.resolveOutputURL("/clips/“a” \xff.mov"), "/Spiele/Täglich 🏀/“a” \xff_highlighted.mov");
    const OutputLocation subfolder{.subfolderName = QStringLiteral(" Über\t")};
    EXPECT_EQ(subfolder.resolveOutputURL("/clips/a.mov", 7), "/clips/Über/a_clip_07_highlighted.mov");
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
