// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

namespace zelvra::test {
namespace {

using Landing = ViewsFixture;

TEST_F(Landing, OpensWhatIsChosenInThePanels) {
    EXPECT_FALSE(isShown("recent0"));
    EXPECT_FALSE(enabled("toolbarCloseButton") || enabled("toolbarTrimButton"));
    click("landingOpenFolder");
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::folder);
    EXPECT_FALSE(state().triggerOpenFolder());
    desktop_.answer = clip("one.mov");
    click("landingOpenVideo");
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == folder_ / "one.mov"; }));
    EXPECT_TRUE(disappears("landing"));
    EXPECT_TRUE(enabled("toolbarCloseButton") && enabled("toolbarTrimButton"));
    click("toolbarOpenVideoButton");
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::movie);
}

TEST_F(Landing, TakesTheFirstOfWhatIsDropped) {
    const auto first = clip("b.mov");
    const std::vector<std::filesystem::path> files{first, clip("a.mov"), clip("c.mov")};
    EXPECT_TRUE(drop(item("landing"), {urlOf(files[0]), urlOf(files[1]), urlOf(files[2])}));
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == first; }));
    EXPECT_EQ(state().queueLabel(), "");
}

TEST_F(Landing, OpensADroppedFolderAsAQueue) {
    clip("clips/2.mov");
    clip("clips/1.mov");
    EXPECT_TRUE(drop(item("landing"), {urlOf(folder_ / "clips")}));
    EXPECT_TRUE(comesTrue([&] { return state().queueLabel() == "1 of 2"; }));
}

TEST_F(Landing, RefusesAnEmptyDropAndIgnoresWhatIsNoFile) {
    EXPECT_FALSE(drop(item("landing"), {}));
    EXPECT_TRUE(drop(item("landing"), {QUrl("https://example.org/clip.mov")}));
    wait(200);
    EXPECT_FALSE(state().videoFile() || state().isOpening());
    EXPECT_EQ(state().errorMessage(), "");
}

TEST_F(Landing, ListsTheFiveNewestRecents) {
    for (const char* name : {"1.mov", "2.mov", "3.mov", "4.mov", "5.mov"}) {
        open(clip(std::string("season/") + name));
    }
    state().handleOpenedURLs({urlOf(folder_ / "season")});
    EXPECT_TRUE(comesTrue([&] { return state().recents().size() == 6; }));
    state().closeVideo();
    EXPECT_EQ(text(in(item("recent0"), "recentName")), "season");
    EXPECT_EQ(text(in(item("recent1"), "recentName")), "5.mov");
    EXPECT_EQ(text(in(item("recent1"), "recentFolder")), "season");
    EXPECT_TRUE(isShown("recent4"));
    EXPECT_FALSE(isShown("recent5"));
    EXPECT_TRUE(showsTip(item("recent2"), (folder_ / "season" / "4.mov").string()));

    std::filesystem::remove(folder_ / "season" / "4.mov");
    click("recent2");
    EXPECT_TRUE(appears("questionMessage"));
    EXPECT_EQ(text("questionMessage"), "“4.mov” can't be found. It may have been moved or deleted.");
    answer("OK");
    EXPECT_EQ(state().errorMessage(), "");
    click("recent1");
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == folder_ / "season" / "5.mov"; }));
}

TEST_F(Landing, IsUsedByKeysAlone) {
    open(clip("one.mov"));
    state().closeVideo();
    desktop_.answer = clip("two.mov");
    QQuickItem* button = &item("landingOpenVideo");
    for (int tab = 0; tab < 20 && !button->hasActiveFocus(); ++tab) {
        key(Qt::Key_Tab);
    }
    key(Qt::Key_Return);
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == folder_ / "two.mov"; }));
}

} // namespace
} // namespace zelvra::test
