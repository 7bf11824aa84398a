// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/MenuState.h"
#include "tests/ZelvraApp/shell/ShellFixture.h"

#include <gmock/gmock.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;

struct Entry {
    QString menu;
    QString item;
};
const std::vector<Entry> needsWork{
    {"File", "closeClipItem"},       {"File", "exportItem"},       {"File", "saveAnnotationsItem"},
    {"File", "openAnnotationsItem"}, {"Edit", "undoItem"},         {"Edit", "redoItem"},
    {"Edit", "restoreItem"},         {"Clip", "addHighlightItem"}, {"Clip", "trimItem"},
    {"Clip", "clearTrimItem"},       {"Clip", "startClipItem"},    {"Clip", "endClipItem"},
    {"Clip", "markClipItem"},        {"Clip", "previousClipItem"}, {"Clip", "nextClipItem"},
};

class Menu : public ShellFixture {
protected:
    bool isEnabled(const QString& menu, const QString& name) { return menuItem(menu, name).isEnabled(); }
    QString title(const QString& menu, const QString& name) {
        return menuItem(menu, name).property("text").toString();
    }
    /// Those of the items above that can be chosen.
    std::vector<std::string> usable() {
        std::vector<std::string> names;
        for (const Entry& entry : needsWork) {
            if (isEnabled(entry.menu, entry.item)) {
                names.push_back(entry.item.chopped(4).toStdString());
            }
        }
        closeMenus();
        return names;
    }
};

TEST_F(Menu, OffersWithoutAClipWhatNeedsNone) {
    EXPECT_THAT(usable(), ElementsAre());
    for (const Entry& entry : {Entry{"File", "openVideoItem"},
                               {"File", "openFolderItem"},
                               {"File", "quitItem"},
                               {"Edit", "settingsItem"},
                               {"View", "previewItem"},
                               {"Help", "helpItem"},
                               {"Help", "aboutItem"}}) {
        EXPECT_TRUE(isEnabled(entry.menu, entry.item)) << entry.item.toStdString();
    }
}

TEST_F(Menu, FollowsTheWork) {
    openClip();
    EXPECT_THAT(usable(), ElementsAre("closeClip", "saveAnnotations", "openAnnotations", "addHighlight",
                                      "trim", "startClip", "endClip"));
    addHighlight(0.5);
    EXPECT_THAT(usable(), ElementsAre("closeClip", "export", "saveAnnotations", "openAnnotations", "undo",
                                      "addHighlight", "trim", "startClip", "endClip"));
    state().setTrim(CMTimeRange{sessionTime(0), sessionTime(1)});
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(state().trimRange());
    EXPECT_TRUE(isEnabled("Edit", "redoItem"));
    choose("Edit", "redoItem");
    EXPECT_THAT(usable(),
                ElementsAre("closeClip", "export", "saveAnnotations", "openAnnotations", "undo",
                            "addHighlight", "trim", "clearTrim", "startClip", "endClip", "markClip"));
    state().setDraft(draftAt(0.2));
    const auto& can = *application_->mainWindow().findChild<QObject*>("exportItem");
    EXPECT_FALSE(can.property("enabled").toBool());
    state().setDraft(std::nullopt);
    EXPECT_TRUE(can.property("enabled").toBool());
}

TEST_F(Menu, NamesWhatExportAndMarkWillDo) {
    openClip();
    EXPECT_EQ(title("File", "exportItem"), "Export…");
    EXPECT_EQ(title("Clip", "markClipItem"), "Mark Clip");
    for (const double start : {0.0, 0.5, 1.0}) {
        mark(start, start + 0.4);
    }
    EXPECT_EQ(title("File", "exportItem"), "Export 3 Marked Clips…");
    closeMenus();
    state().editMarkedClip(state().markedClips().front());
    EXPECT_EQ(title("Clip", "markClipItem"), "Save & Return");
    closeMenus();
    key(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(state().editingClipID());
}

TEST_F(Menu, WalksAFolderByBothPairsOfKeys) {
    clip("1.mov");
    clip("2.mov");
    state().handleOpenedURLs({urlOf(folder_.path())});
    ASSERT_TRUE(comesTrue([&] { return state().queueLabel() == "1 of 2" && state().videoFile(); }));
    EXPECT_FALSE(isEnabled("Clip", "previousClipItem"));
    closeMenus();
    key(Qt::Key_BracketRight, Qt::ControlModifier);
    EXPECT_TRUE(comesTrue([&] { return state().queueLabel() == "2 of 2" && !state().isOpening(); }));
    EXPECT_FALSE(isEnabled("Clip", "nextClipItem"));
    closeMenus();
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(comesTrue([&] { return state().queueLabel() == "1 of 2"; }));
}

TEST_F(Menu, ListsRecentsAndClearsThem) {
    openClip();
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(state().videoFile());
    hover(menuItem("File", "openRecentMenu"));
    EXPECT_EQ(textOf("recentItem"), "game.mov");
    click("recentItem");
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == folder_ / "game.mov"; }));
    hover(menuItem("File", "openRecentMenu"));
    click("clearRecentsItem");
    EXPECT_TRUE(comesTrue([&] { return state().recents().empty(); }));
    hover(menuItem("File", "openRecentMenu"));
    EXPECT_FALSE(item("clearRecentsItem").isEnabled());
    EXPECT_FALSE(isShown("recentItem"));
}

TEST_F(Menu, AsksForAMovieOrAFolder) {
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(desktop_.asked);
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::movie);
    key(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::folder);
}

TEST_F(Menu, TakesSingleLettersOnlyWhileTheyAreCommands) {
    openClip("game.mov");
    key(Qt::Key_I);
    EXPECT_EQ(state().markedClips().size(), 1U);

    key(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(isFront("Settings"));
    click("subfolderName");
    key(Qt::Key_A, Qt::ControlModifier);
    type("ino");
    EXPECT_EQ(textOf("subfolderName"), "ino");
    EXPECT_EQ(state().markedClips().size(), 1U);
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(isShown("subfolderName"));
    EXPECT_TRUE(state().videoFile());

    window().requestActivate();
    ASSERT_TRUE(isFront("Zelvra"));
    state().setErrorMessage("Something to be read first");
    key(Qt::Key_I);
    EXPECT_EQ(state().markedClips().size(), 1U);
    click("answer:OK");
    key(Qt::Key_I);
    EXPECT_EQ(state().markedClips().size(), 2U);
}

TEST_F(Menu, SwitchesThePreviewOfHighlights) {
    EXPECT_TRUE(menuItem("View", "previewItem").property("checked").toBool());
    choose("View", "previewItem");
    EXPECT_FALSE(state().previewEnabled());
    state().preferences().write(preferences::previewEnabled, true);
    EXPECT_TRUE(menuItem("View", "previewItem").property("checked").toBool());
}

} // namespace
} // namespace zelvra::test
