// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/Settings.h"
#include "tests/ZelvraApp/shell/ShellFixture.h"

namespace zelvra::test {
namespace {

class SettingsWindow : public ShellFixture {
protected:
    SettingsWindow() {
        key(Qt::Key_Comma, Qt::ControlModifier);
        EXPECT_TRUE(isFront("Settings"));
    }
    PreferenceStore& store() { return state().preferences(); }
    void scrollToTheEnd() { drag(item("settingsScroller"), {10, 600}, {10, 50}); }
};

TEST(OutputFooter, SaysWhereExportsGo) {
    const auto footer = [](OutputLocationMode mode, const QString& subfolder, const QString& folder) {
        return Settings::outputFooterText(
            {.mode = mode, .subfolderName = subfolder, .customFolderPath = folder});
    };
    EXPECT_EQ(footer(OutputLocationMode::sameAsSource, "x", "/y"),
              "Exports land next to each source clip, as {name}_highlighted.{ext}.");
    EXPECT_EQ(footer(OutputLocationMode::subfolder, " clips\t", ""),
              "Exports go into a “clips” folder inside each source's folder. Created on first export.");
    EXPECT_EQ(footer(OutputLocationMode::subfolder, "   ", ""),
              "Exports go into a “highlighted” folder inside each source's folder. Created on first export.");
    EXPECT_EQ(footer(OutputLocationMode::custom, "", ""),
              "Pick a folder. Until you do, exports fall back to the source folder.");
    EXPECT_EQ(footer(OutputLocationMode::custom, "", "/movies"),
              "All exports go to the chosen folder, regardless of source location.");
}

TEST_F(SettingsWindow, ShowTheStoredValuesAndWriteEachChangeAtOnce) {
    EXPECT_EQ(textOf("defaultSizeText"), "6.0%");
    EXPECT_EQ(textOf("defaultStrokeText"), "0.40%");
    store().write(PreferenceStore::Changes{}
                      .set(preferences::defaultStrokeWidthRatio, 0.005)
                      .set(preferences::defaultColorHex, QString("#30D158"))
                      .set(preferences::defaultDurationSec, 9.5));
    EXPECT_EQ(textOf("defaultStrokeText"), "0.50%");
    EXPECT_EQ(item("defaultColor").property("color").value<QColor>(), QColor("#30D158"));

    click("defaultDurationMore");
    EXPECT_EQ(textOf("defaultDurationText"), "10.0s");
    EXPECT_FALSE(item("defaultDurationMore").isEnabled());
    EXPECT_EQ(store().read(preferences::defaultDurationSec), 10.0);
    QQuickItem& size = item("defaultSize");
    drag(size, {20, size.height() / 2}, {size.width(), size.height() / 2});
    EXPECT_EQ(store().read(preferences::defaultRadiusRatio), 0.45);
    click("includeAudio");
    EXPECT_EQ(store().read(preferences::outputIncludeAudio), false);
    EXPECT_EQ(state().sessionDefaults().durationSec, 10);
}

TEST_F(SettingsWindow, StopAtTheEndsOfTheirRanges) {
    store().write(preferences::clipDefaultLengthSec, 115.0);
    click("clipLengthMore");
    EXPECT_EQ(textOf("clipLengthText"), "120s");
    EXPECT_FALSE(item("clipLengthMore").isEnabled());
    store().write(preferences::clipDefaultLengthSec, 10.0);
    click("clipLengthLess");
    EXPECT_EQ(textOf("clipLengthText"), "5s");
    EXPECT_FALSE(item("clipLengthLess").isEnabled());
    store().write(preferences::defaultDurationSec, 0.5);
    EXPECT_FALSE(item("defaultDurationLess").isEnabled());
}

TEST_F(SettingsWindow, ChooseWhereExportsGo) {
    store().write(preferences::outputMode, QString("elsewhere"));
    EXPECT_TRUE(isShown("subfolderName"));
    click("outputCustom");
    EXPECT_EQ(store().read(preferences::outputMode), "custom");
    EXPECT_FALSE(isShown("subfolderName"));
    EXPECT_EQ(textOf("customFolder"), "— not chosen —");
    click("chooseFolder");
    ASSERT_TRUE(desktop_.asked);
    EXPECT_EQ(desktop_.asked->prompt, "Choose");
    EXPECT_EQ(desktop_.asked->message, "Pick a folder to export highlighted clips into.");
    EXPECT_EQ(textOf("customFolder"), "— not chosen —");
    desktop_.answer = "/movies/for the team";
    click("chooseFolder");
    EXPECT_EQ(textOf("customFolder"), "/movies/for the team");
    EXPECT_EQ(textOf("outputFooter"), "All exports go to the chosen folder, regardless of source location.");
    click("outputSameAsSource");
    EXPECT_EQ(store().read(preferences::outputMode), "sameAsSource");
}

TEST_F(SettingsWindow, SwitchTheMemoryOffAndForgetAllOfIt) {
    openClip();
    state().setDraft(draftAt(0.5, 1, 0, state().sourceInfo()->displaySize));
    state().commitDraft();
    EXPECT_TRUE(comesTrue([&] { return state().rememberedWork(folder_ / "game.mov") != nullptr; }));
    state().setShowDefaultsScopePrompt(false);
    scrollToTheEnd();
    click("forgetWork");
    click("answer:Cancel");
    EXPECT_TRUE(state().rememberedWork(folder_ / "game.mov"));
    click("forgetWork");
    EXPECT_EQ(item("questionTitle").window()->title(), "Settings");
    click("answer:Forget All");
    EXPECT_TRUE(comesTrue([&] { return state().rememberedWork(folder_ / "game.mov") == nullptr; }));
    EXPECT_EQ(state().highlights().size(), 1U) << "what is open stays";
    click("rememberWork");
    EXPECT_FALSE(state().remembersWork());
}

TEST_F(SettingsWindow, AreResetToFactoryDefaultsAtOnce) {
    click("outputSubfolder");
    click("subfolderName");
    type("x");
    EXPECT_EQ(store().read(preferences::outputSubfolderName), "highlightedx");
    store().write(PreferenceStore::Changes{}
                      .set(preferences::defaultColorHex, QString("no colour"))
                      .set(preferences::clipDefaultLengthSec, 60.0)
                      .set(preferences::outputMode, QString("custom"))
                      .set(preferences::outputCustomFolderPath, QString("/movies"))
                      .set(preferences::outputIncludeAudio, false));
    EXPECT_EQ(item("defaultColor").property("color").value<QColor>(), QColor("#0A84FF"));
    scrollToTheEnd();
    click("resetSettings");
    EXPECT_EQ(store().read(preferences::defaultColorHex), "#0A84FF");
    EXPECT_EQ(store().read(preferences::clipDefaultLengthSec), 30.0);
    EXPECT_EQ(store().read(preferences::outputCustomFolderPath), "");
    EXPECT_EQ(store().read(preferences::outputIncludeAudio), true);
    EXPECT_EQ(textOf("subfolderName"), "highlighted");
}

} // namespace
} // namespace zelvra::test
