// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/shell/ShellFixture.h"

namespace zelvra::test {
namespace {

using Leaving = ShellFixture;

TEST_F(Leaving, EndsAtOnceIfNothingIsLost) {
    openClip();
    window().close();
    EXPECT_TRUE(desktop_.terminated);
}

TEST_F(Leaving, AsksBeforeUnexportedWorkIsLost) {
    openClip();
    addHighlight(0.5);
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(desktop_.terminated);
    ASSERT_TRUE(state().showCloseConfirmation());

    click("answer:Cancel");
    wait(1);
    state().closeVideo(); // later, for other reasons
    EXPECT_FALSE(desktop_.terminated);
}

TEST_F(Leaving, EndsOnceTheWorkIsDiscarded) {
    openClip();
    addHighlight(0.5);
    window().close();
    ASSERT_TRUE(state().showCloseConfirmation());
    click("answer:Close and Discard");
    EXPECT_TRUE(comesTrue([&] { return desktop_.terminated; }));
}

/// A movie whose every picture has to be encoded anew, so that its export takes a while.
const NumberedMovie slow{.width = 1280, .height = 720, .frames = 600, .codec = MovieCodec::mpeg4};

class LeavingAnExport : public ShellFixture {
protected:
    LeavingAnExport() {
        open(clip("game.mov", slow));
        addHighlight(0.5);
        key(Qt::Key_E, Qt::ControlModifier);
        EXPECT_TRUE(comesTrue([&] { return state().isExporting() && state().exportProgress() > 0; }));
        window().close();
        EXPECT_TRUE(isShown("answer:Keep Exporting"));
    }
};

TEST_F(LeavingAnExport, ContinuesIfTheUserStays) {
    key(Qt::Key_Escape);
    EXPECT_TRUE(comesTrue([&] { return !isShown("answer:Keep Exporting"); }));
    EXPECT_TRUE(state().isExporting());
    EXPECT_FALSE(desktop_.terminated);
}

TEST_F(LeavingAnExport, StopsItAndLeavesNothingBehind) {
    click("answer:Stop and Quit");
    EXPECT_TRUE(comesTrue([&] { return desktop_.terminated; }));
    EXPECT_FALSE(state().showCloseConfirmation());
    application_.reset();
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / "highlighted"));
}

} // namespace
} // namespace zelvra::test
