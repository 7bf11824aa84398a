// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

namespace zelvra::test {
namespace {

/// Work that was left on a clip, as the window shows it when the user comes back.
class LeftWork : public ViewsFixture {
protected:
    /// Two highlights and a marked clip, then another clip.
    void leaveWorkOn(const std::filesystem::path& file) {
        open(file);
        mark(0.2, 0.8);
        highlight(1);
        highlight(1.5);
        open(other_);
    }
    /// Ends the program and starts it again. If it is killed, its marker is still there.
    void startAgain(bool killed) {
        const auto markers = folder_ / "state" / "running";
        const auto kept = folder_ / "markers";
        std::filesystem::copy(markers, kept);
        application_.reset();
        if (killed) {
            std::filesystem::copy(kept, markers);
        }
        std::filesystem::remove_all(kept);
        application_ = std::make_unique<Application>(options());
        EXPECT_TRUE(comesToFront());
    }
    /// The marker of the running program names the clip.
    bool isMarkedAsOpen(const std::filesystem::path& file) {
        return comesTrue([&] {
            for (const auto& marker : std::filesystem::directory_iterator(folder_ / "state" / "running")) {
                const Bytes bytes = readBytes(marker.path());
                if (std::string(bytes.begin(), bytes.end()).find(file.string()) != std::string::npos) {
                    return true;
                }
            }
            return false;
        });
    }
    QRectF placeOf(const QString& objectName) {
        const QQuickItem& found = item(objectName);
        return found.mapRectToScene(found.boundingRect());
    }

    std::filesystem::path game_ = clip("match/game.mov", {.frames = 90});
    std::filesystem::path other_ = clip("match/other.mov");
};

TEST_F(LeftWork, IsRestoredByTheCardOrByItsKey) {
    leaveWorkOn(game_);
    EXPECT_FALSE(isShown("leftWork"));
    open(game_);
    EXPECT_TRUE(appears("leftWork"));
    EXPECT_EQ(text("leftWorkText"), "You left 2 highlights and 1 marked clip here.");
    EXPECT_TRUE(showsTip(item("restoreLeftWork"), "Restore what you left on this clip (R)"));
    click("restoreLeftWork");
    EXPECT_TRUE(disappears("leftWork"));
    EXPECT_EQ(state().highlights().size(), 2U);
    EXPECT_EQ(state().markedClips().size(), 1U);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(state().highlights().empty() && state().markedClips().empty());

    EXPECT_TRUE(appears("leftWork")) << "offered again";
    state().setErrorMessage("Something to be read first");
    key(Qt::Key_R);
    EXPECT_TRUE(state().highlights().empty());
    answer("OK");
    EXPECT_TRUE(disappears("questionTitle"));
    key(Qt::Key_R);
    EXPECT_EQ(state().highlights().size(), 2U);
}

TEST_F(LeftWork, StaysAwayOnceItIsDismissed) {
    leaveWorkOn(game_);
    open(game_);
    window().resize(window().minimumSize());
    click("dismissLeftWork");
    EXPECT_TRUE(disappears("leftWork"));
    key(Qt::Key_R);
    EXPECT_TRUE(state().highlights().empty());
    EXPECT_FALSE(state().player().rate() > 0) << "no click reached the picture";
}

TEST_F(LeftWork, HasRoomBesideTheMessageOfAnExportAndTheControls) {
    leaveWorkOn(game_);
    open(game_);
    highlight(1.2);
    click("exportMovies");
    EXPECT_TRUE(comesTrue([&] { return state().showPostExportDialog(); }));
    answer("Stay with Current Clip");
    EXPECT_TRUE(appears("exportBanner"));
    window().resize(window().minimumSize());
    EXPECT_TRUE(comesTrue([&] { return placeOf("leftWork").top() > placeOf("exportBanner").bottom(); }));
    EXPECT_TRUE(comesTrue([&] { return placeOf("playerArea").contains(placeOf("leftWork")); }));
    click("dismissBanner");
    EXPECT_TRUE(disappears("exportBanner"));
    EXPECT_TRUE(isShown("leftWork"));
}

TEST_F(LeftWork, IsShownOnTheLandingScreenWithWhatWasInterrupted) {
    leaveWorkOn(game_);
    highlight(0.5);
    click("exportMovies");
    EXPECT_TRUE(comesTrue([&] { return state().showPostExportDialog(); }));
    answer("Stay with Current Clip");
    open(game_);
    EXPECT_TRUE(isMarkedAsOpen(game_));
    startAgain(true);
    EXPECT_TRUE(appears("interrupted"));
    EXPECT_EQ(text("interrupted"),
              "Zelvra did not end properly. Your work was kept: open “game.mov” to go on.");
    QQuickItem& game = item("recent0");
    QQuickItem& other = item("recent1");
    EXPECT_EQ(text(in(game, "workCount")), "2 highlights, 1 clip");
    EXPECT_TRUE(in(game, "interruptedSign").isVisible());
    EXPECT_EQ(text(in(other, "workCount")), "1 highlight");
    EXPECT_TRUE(in(other, "exportedSign").isVisible());
    EXPECT_TRUE(showsTip(game, game_.string() + "\n2 highlights, 1 clip\n"
                                                "Was open when Zelvra did not end properly"));
    click(game);
    EXPECT_TRUE(appears("leftWork"));
    startAgain(false);
    EXPECT_TRUE(appears("workCount"));
    EXPECT_FALSE(isShown("interrupted") || isShown("interruptedSign"));
}

TEST_F(LeftWork, IsListedWithTheClipsOfAFolder) {
    openQueue();
    highlight(0.5);
    click("nextClip");
    EXPECT_TRUE(comesTrue([&] { return text("fileName") == "three.mov"; }));
    click("queueButton");
    EXPECT_TRUE(appears("queueItem"));
    const auto clips = items("queueItem");
    ASSERT_EQ(clips.size(), 3U);
    EXPECT_EQ(clips[0]->property("detail").toString(), "1 highlight");
    EXPECT_EQ(clips[1]->property("iconName").toString(), "play_arrow") << "the open one";
    EXPECT_EQ(clips[1]->property("detail").toString(), "");
    click(*clips[2]);
    EXPECT_TRUE(comesTrue([&] { return state().queueLabel() == "3 of 3" && text("fileName") == "two.mov"; }));
}

} // namespace
} // namespace zelvra::test
