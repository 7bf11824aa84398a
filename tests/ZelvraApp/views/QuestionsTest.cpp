// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

#include <gmock/gmock.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;

class Questions : public ViewsFixture {
protected:
    /// The title of the question that is up.
    std::string asked() { return appears("questionTitle") ? text("questionTitle") : ""; }
    bool nothingAsked() { return disappears("questionTitle"); }
};

TEST_F(Questions, AskBeforeWorkIsLost) {
    open(clip("one.mov"));
    highlight(0.5);
    highlight(1);
    click("toolbarCloseButton");
    EXPECT_EQ(asked(), "Close this clip?");
    EXPECT_EQ(text("questionMessage"), "2 highlights haven't been exported yet. Closing will discard them.");
    EXPECT_THAT(answers(), ElementsAre("Close and Discard", "Cancel"));
    answer("Cancel");
    EXPECT_TRUE(nothingAsked());
    EXPECT_TRUE(state().videoFile() && !state().showCloseConfirmation());
    click("toolbarCloseButton");
    EXPECT_EQ(asked(), "Close this clip?");
    key(Qt::Key_Return);
    EXPECT_TRUE(nothingAsked());
    EXPECT_TRUE(state().videoFile()) << "Return discards nothing";
    click("closeClip");
    answer("Close and Discard");
    EXPECT_TRUE(appears("landing"));
}

TEST_F(Questions, AskBeforeADropReplacesWorkThatIsNotRemembered) {
    open(clip("one.mov"));
    const auto two = clip("two.mov");
    highlight(0.5);
    drop(item("clipDrop"), {urlOf(two)});
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == two; })) << "it is remembered";

    state().preferences().write(preferences::rememberWork, false);
    open(folder_ / "one.mov");
    highlight(0.5);
    drop(item("clipDrop"), {urlOf(two)});
    EXPECT_EQ(asked(), "Close this clip?");
    key(Qt::Key_Escape);
    EXPECT_TRUE(nothingAsked());
    click("toolbarCloseButton");
    answer("Close and Discard");
    EXPECT_TRUE(appears("landing"));
    wait(200);
    EXPECT_FALSE(state().videoFile()) << "what was cancelled before does not come back";

    open(folder_ / "one.mov");
    highlight(0.5);
    drop(item("clipDrop"), {urlOf(two)});
    EXPECT_EQ(asked(), "Close this clip?");
    EXPECT_EQ(find("clipDrop")->isEnabled(), false) << "no drops while a question is up";
    answer("Close and Discard");
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == two; }));
    drop(item("clipDrop"), {urlOf(folder_ / "one.mov")});
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == folder_ / "one.mov"; })) << "nothing to lose";
}

TEST_F(Questions, WaitForEachOther) {
    open(clip("one.mov"));
    highlight(0.5);
    state().setShowDefaultsScopePrompt(true);
    state().setErrorMessage("It broke.");
    EXPECT_EQ(asked(), "Use these settings for future highlights?");
    EXPECT_THAT(answers(), ElementsAre("Always (Save as My Defaults)", "For This Session", "Just This Clip"));
    key(Qt::Key_Escape);
    EXPECT_TRUE(comesTrue([&] { return asked() == "Something went wrong"; }));
    EXPECT_FALSE(state().showDefaultsScopePrompt());
    EXPECT_EQ(text("questionMessage"), "It broke.");
    answer("OK");
    EXPECT_TRUE(nothingAsked());
    EXPECT_EQ(state().errorMessage(), "");
}

TEST_F(Questions, ApplyTheChosenScope) {
    open(clip("one.mov"));
    state().addHighlightAtCurrentTime();
    EXPECT_TRUE(comesTrue([&] { return state().draft().has_value(); }));
    HighlightDraft draft = *state().draft();
    draft.durationSec = 7;
    state().setDraft(draft);
    state().commitDraft();
    EXPECT_EQ(asked(), "Use these settings for future highlights?");
    EXPECT_TRUE(comesToFront());
    answer("For This Session");
    EXPECT_TRUE(nothingAsked());
    EXPECT_EQ(state().sessionDefaults().durationSec, 7);
}

TEST_F(Questions, LeaveTheEditorAloneExceptForErrors) {
    open(clip("one.mov"));
    highlight(1);
    state().setShowCloseConfirmation(true);
    EXPECT_EQ(asked(), "Close this clip?");
    state().addHighlightAtCurrentTime();
    EXPECT_TRUE(comesTrue([&] { return state().draft().has_value(); }));
    EXPECT_TRUE(nothingAsked());
    EXPECT_TRUE(state().showCloseConfirmation()) << "it waits";
    state().setErrorMessage("It broke.");
    EXPECT_EQ(asked(), "Something went wrong");
    EXPECT_NE(item("questionTitle").window(), &window()) << "over the editor";
    answer("OK");
    EXPECT_TRUE(nothingAsked());
    state().setDraft(std::nullopt);
    EXPECT_EQ(asked(), "Close this clip?");
}

TEST_F(Questions, ContinueAfterAnExport) {
    openQueue();
    highlight(0.5);
    click("exportMovies");
    EXPECT_EQ(asked(), "Export complete");
    EXPECT_EQ(text("questionMessage"), "Saved as one_highlighted.mov.");
    EXPECT_THAT(answers(), ElementsAre("Next Clip (2 of 3)", "Open New Video…", "Open Folder of Clips…",
                                       "Stay with Current Clip", "Quit"));
    answer("Next Clip (2 of 3)");
    EXPECT_TRUE(
        comesTrue([&] { return state().queueLabel() == "2 of 3" && text("fileName") == "three.mov"; }));
    EXPECT_TRUE(nothingAsked());

    state().setShowPostExportDialog(true);
    answer("Open New Video…");
    EXPECT_TRUE(comesTrue([&] { return desktop_.asked.has_value(); }));
    EXPECT_TRUE(appears("landing"));
    state().setShowPostExportDialog(true);
    EXPECT_EQ(asked(), "Export complete");
    EXPECT_EQ(answers().front(), "Open New Video…") << "there is no next clip";
    answer("Quit");
    EXPECT_TRUE(comesTrue([&] { return desktop_.terminated; }));
}

} // namespace
} // namespace zelvra::test
