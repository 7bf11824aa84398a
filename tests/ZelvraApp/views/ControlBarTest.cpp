// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

#include <gmock/gmock.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;

class ControlBar : public ViewsFixture {
protected:
    /// Which of the buttons can be pressed.
    std::vector<std::string> enabledButtons() {
        std::vector<std::string> names;
        for (const char* name :
             {"closeClip", "inPointButton", "outPointButton", "addHighlight", "markClip", "exportMovies"}) {
            if (enabled(name)) {
                names.emplace_back(name);
            }
        }
        return names;
    }
};

TEST_F(ControlBar, FollowsTheWork) {
    openRecording();
    EXPECT_EQ(text("fileName"), "recording.mov");
    EXPECT_EQ(text("playheadTime"), "00:00.00");
    EXPECT_THAT(enabledButtons(),
                ElementsAre("closeClip", "inPointButton", "outPointButton", "addHighlight"));
    trim(100, 120);
    EXPECT_TRUE(enabled("markClip"));
    EXPECT_FALSE(enabled("exportMovies"));
    EXPECT_EQ(text("trimBadgeRange"), "01:40.00 – 02:00.00");
    click("markClip");
    EXPECT_FALSE(isShown("trimBadge"));
    EXPECT_TRUE(comesTrue([&] { return text("playheadTime") == "02:00.00"; }));
    EXPECT_EQ(text("addHighlight"), "Add Highlight at 02:00.00");
    EXPECT_EQ(text("exportMovies"), "Export (1)");
    EXPECT_THAT(enabledButtons(),
                ElementsAre("closeClip", "inPointButton", "outPointButton", "addHighlight", "exportMovies"));
    click("closeClip");
    EXPECT_TRUE(appears("questionMessage"));
}

TEST_F(ControlBar, TurnsMarkingIntoSavingWhileAClipIsEdited) {
    openRecording();
    mark(100, 120);
    state().editMarkedClip(state().markedClips().front());
    EXPECT_EQ(text("markClip"), "Save & Return");
    EXPECT_TRUE(showsTip(item("markClip"), "Save edits and return to the full video (⇧⌘M)"));
    click("clearTrim");
    EXPECT_FALSE(state().editingClipID());
    EXPECT_EQ(state().markedClips().size(), 1U) << "only the edit is discarded";
    EXPECT_EQ(text("markClip"), "Mark Clip");
}

TEST_F(ControlBar, MarksByItsKeysWhoseTipsExplainThem) {
    openRecording();
    EXPECT_TRUE(showsTip(item("inPoint"), "Start a 30-second clip here (I) — press O to set the exact end"));
    EXPECT_TRUE(showsTip(item("outPoint"), "Press I first to start a clip"));
    state().preferences().write(preferences::clipDefaultLengthSec, 45.9);
    EXPECT_TRUE(showsTip(item("inPoint"), "Start a 45-second clip here (I) — press O to set the exact end"));
    click("inPointButton");
    EXPECT_EQ(state().markedClips().front().range.duration.seconds(), 45.9);
    EXPECT_TRUE(showsTip(item("outPoint"), "Set the new clip's end to the current time (O)"));
    trim(100, 120);
    EXPECT_TRUE(showsTip(item("inPoint"), "Nudge the clip's start to the current time (I)"));
    EXPECT_TRUE(showsTip(item("markClip"), "Mark the current trim + highlights as a clip (⇧⌘M)"));
}

TEST_F(ControlBar, WalksThroughAFolder) {
    openQueue();
    EXPECT_EQ(text("queueLabel"), "1 of 3");
    EXPECT_FALSE(enabled("previousClip"));
    click("nextClip");
    EXPECT_TRUE(comesTrue([&] { return text("fileName") == "three.mov"; }));
    click("nextClip");
    EXPECT_TRUE(comesTrue([&] { return text("queueLabel") == "3 of 3" && text("fileName") == "two.mov"; }));
    EXPECT_FALSE(enabled("nextClip"));
    click("previousClip");
    EXPECT_TRUE(comesTrue([&] { return text("fileName") == "three.mov"; }));
    EXPECT_TRUE(showsTip(item("previousClip"), "Previous clip (⌘[)"));
}

TEST_F(ControlBar, OpensByItsMenu) {
    open(clip("one.mov"));
    EXPECT_FALSE(isShown("queueNavigator"));
    click("openMenuButton");
    click("openMenuFolder");
    EXPECT_TRUE(comesTrue([&] { return desktop_.asked.has_value(); }));
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::folder);
}

TEST_F(ControlBar, KeepsAllItsButtonsInANarrowWindow) {
    openQueue();
    mark(0.2, 0.5);
    trim(0.5, 1.5);
    for (const int width : {1600, 1280, 1100, 1000, 960}) {
        window().resize(width, 620);
        wait(50);
        const QQuickItem& bar = item("controlBar");
        const QQuickItem& last = item("exportMovies");
        EXPECT_LE(last.mapToItem(&bar, {last.width(), 0}).x(), bar.width() - 11.5) << width;
        EXPECT_GE(item("inPoint").mapToItem(&bar, QPointF()).x(),
                  item("clearTrim").mapToItem(&bar, {item("clearTrim").width(), 0}).x())
            << width;
    }
    drag(item("divider"), {0, 300}, {-400, 300});
    EXPECT_EQ(item("controlBar").width(), 520);
    const QQuickItem& last = item("exportMovies");
    EXPECT_LE(last.mapToItem(&item("controlBar"), {last.width(), 0}).x(), 520);
    EXPECT_EQ(text("addHighlight"), "");
    EXPECT_TRUE(showsTip(item("addHighlight"), "Add highlight at current time (N)"));
}

} // namespace
} // namespace zelvra::test
