// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/AspectFit.h"
#include "ZelvraApp/editor/PictureMapping.h"
#include "ZelvraCore/FrameGrab.h"
#include "tests/support/MovieReading.h"
#include "tests/support/window/WindowFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace zelvra::test {
namespace {

/// Whole jobs, from the opened window to the exported movie, as a coach does them with mouse and keys.
class WindowStory : public WindowFixture {
protected:
    /// Drags over the editor's picture, in fractions of it.
    void draw(const Point& from, const Point& to) {
        QQuickItem& canvas = item("editorCanvas");
        const QRectF picture = aspectFitRect(QSizeF(320, 180), canvas.size());
        drag(canvas, viewPoint(from, picture), viewPoint(to, picture));
    }
    void waitForEditor() {
        EXPECT_TRUE(comesTrue([&] { return isShown("editorCanvas") && item("editorCanvas").width() > 0; }));
    }
    void waitForNoEditor() {
        EXPECT_TRUE(comesTrue([&] { return !isShown("editorCanvas"); }));
    }
    /// Moves the playhead exactly there.
    void goTo(double seconds) {
        state().seek(CMTime::fromSeconds(seconds, 600));
        EXPECT_TRUE(comesTrue([&] { return std::abs(state().currentTime().seconds() - seconds) < 1e-6; }));
    }
    void exportAll() {
        key(Qt::Key_E, Qt::ControlModifier);
        EXPECT_TRUE(comesTrue([&] { return isShown("answer:Stay with Current Clip"); }));
        EXPECT_EQ(state().errorMessage(), "");
    }
    /// For how long the movie shows that picture of its source.
    static double seconds(const std::filesystem::path& movie, int number) {
        const std::vector<ShownFrame> frames = showMovie(movie).frames;
        const auto shows = [&](const ShownFrame& frame) { return frame.number == number; };
        const auto first = std::ranges::find_if(frames, shows);
        const auto next = std::find_if_not(first, frames.end(), shows);
        return first == frames.end() || next == frames.end() ? 0 : (next->time - first->time).seconds();
    }
    /// The exported picture's colour at a point, in fractions.
    static QColor colorAt(const std::filesystem::path& movie, double time, const Point& point) {
        const Image picture = extractFrame(movie, CMTime::fromSeconds(time, 600));
        const auto x = static_cast<std::size_t>(point.x * picture.width());
        const auto y = static_cast<std::size_t>(point.y * picture.height());
        const std::uint8_t* pixel =
            picture.raster().rgba.data() + 4 * (y * static_cast<std::size_t>(picture.width()) + x);
        return {pixel[0], pixel[1], pixel[2]};
    }
    static bool isBlue(const QColor& color) { return color.blue() > color.red() + 60; }
};

TEST_F(WindowStory, OneClipFromTheDropToTheExportedMovie) {
    const auto game = clip("game.mp4", {.frames = 120, .sound = SoundCodec::aac, .container = "mp4"});
    ASSERT_TRUE(drop(item("landing"), {urlOf(game)}));
    ASSERT_TRUE(comesTrue([&] { return state().player().isReady(); }));
    EXPECT_EQ(textOf("fileName"), "game.mp4");
    EXPECT_FALSE(item("exportMovies").isEnabled());

    // A rectangle at one second, drawn with a broad line: the new style is kept for this clip.
    goTo(1);
    key(Qt::Key_N);
    waitForEditor();
    click("tool:rectangle");
    draw({0.2, 0.5}, {0.6, 0.9});
    QQuickItem& stroke = item("strokeSlider");
    click(stroke, QPointF(stroke.width() - 1, stroke.height() / 2));
    click("freezeStepperLess");
    EXPECT_EQ(textOf("freezeStepper"), "2.5s");
    key(Qt::Key_Return);
    waitForNoEditor();
    click("answer:Just This Clip");
    EXPECT_TRUE(comesTrue([&] { return isShown("highlightRow") && isShown("timelineStrip"); }));
    EXPECT_EQ(textOf("highlightFreeze"), "2.5s freeze");

    // Another a second later is thought better of, twice.
    goTo(2);
    key(Qt::Key_N);
    waitForEditor();
    key(Qt::Key_Escape);
    waitForNoEditor();
    click("addHighlight");
    waitForEditor();
    click("commitDraft");
    waitForNoEditor();
    EXPECT_EQ(state().highlights().size(), 2U);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state().highlights().size(), 1U);

    // The first is edited again, from its row.
    click("highlightRow");
    waitForEditor();
    EXPECT_EQ(textOf("editorTitle"), "Edit Highlight");
    drag(item("moveHandle"), {12, 12}, {12 + 40, 12});
    key(Qt::Key_Return);
    waitForNoEditor();
    const HighlightShape shape = state().highlights().front().shape;

    exportAll();
    click("answer:Stay with Current Clip");
    const auto movie = folder_ / "highlighted" / "game_highlighted.mp4";
    EXPECT_NEAR(seconds(movie, 30), 2.5 + 1.0 / 30, 0.002);
    EXPECT_TRUE(isBlue(colorAt(movie, 2, {shape.p1.x, 0.7})));
    EXPECT_TRUE(isBlue(colorAt(movie, 2, {0.45, shape.p2.y})));
    EXPECT_FALSE(isBlue(colorAt(movie, 0.5, {shape.p1.x, 0.7})));

    EXPECT_EQ(textOf("exportedName"), "game_highlighted.mp4");
    click("reveal");
    EXPECT_EQ(desktop_.revealed, movie);
    key(Qt::Key_W, Qt::ControlModifier); // exported: nothing to lose
    EXPECT_TRUE(comesTrue([&] { return isShown("landing"); }));
    EXPECT_EQ(textOf("recentName"), "game.mp4");
}

TEST_F(WindowStory, ALongRecordingIsMarkedWhileItPlaysAndRefined) {
    open(clip("match.mov", {.frames = 1800}));
    state().preferences().write(preferences::clipDefaultLengthSec, 5.0);
    key(Qt::Key_Space);
    EXPECT_TRUE(comesTrue([&] { return state().currentTime().seconds() > 0.3; }));
    key(Qt::Key_I);
    EXPECT_TRUE(comesTrue([&] { return state().currentTime().seconds() > 1; }));
    key(Qt::Key_O);
    key(Qt::Key_I);
    EXPECT_GT(state().player().rate(), 0); // marking does not stop the game
    key(Qt::Key_Space);
    ASSERT_EQ(state().markedClips().size(), 2U);
    EXPECT_EQ(textOf("exportMovies"), "Export (2)");

    // The second is loaded, its start dragged on the zoomed strip, one frame of it highlighted.
    ASSERT_TRUE(comesTrue([&] { return items("markedClipRow").size() == 2; }));
    click(*items("markedClipRow").back());
    EXPECT_TRUE(comesTrue([&] { return textOf("markClip") == "Save & Return"; }));
    QQuickItem& start = item("trimStartHandle");
    const double before = state().trimRange()->start.seconds();
    drag(start, {start.width() / 2, 10}, {start.width() / 2 + 30, 10});
    const double after = state().trimRange()->start.seconds();
    EXPECT_GT(after, before + 0.2);
    goTo(4);
    key(Qt::Key_N);
    waitForEditor();
    click("tool:arrow");
    key(Qt::Key_Return);
    waitForNoEditor();
    key(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(state().trimRange().has_value());

    // The first is loaded, too, but what was changed is thrown away.
    click(*items("markedClipRow").front());
    EXPECT_TRUE(comesTrue([&] { return isShown("trimBadge"); }));
    const CMTime end = state().markedClips()[0].range.end();
    key(Qt::Key_O);
    click("clearTrim");
    EXPECT_EQ(state().markedClips()[0].range.end(), end);

    exportAll();
    EXPECT_EQ(textOf("questionMessage"), "Saved as match_clip_02_highlighted.mov.");
    key(Qt::Key_Escape);
    const auto second = folder_ / "highlighted" / "match_clip_02_highlighted.mov";
    EXPECT_NEAR(seconds(second, 120), 3 + 1.0 / 30, 0.002);
    EXPECT_NEAR(showMovie(second).frames.front().number.value_or(-1), after * 30, 1);
    EXPECT_TRUE(std::filesystem::exists(folder_ / "highlighted" / "match_clip_01_highlighted.mov"));
}

TEST_F(WindowStory, AFolderIsWorkedThroughAndUnsavedWorkIsAskedAbout) {
    const auto games = folder_ / "games";
    std::filesystem::create_directory(games);
    for (const char* name : {"clip 10.mov", "clip 9.mov"}) {
        std::filesystem::copy_file(movieFile({.frames = 60}), games / name);
    }
    desktop_.answer = games;
    click("landingOpenFolder");
    ASSERT_TRUE(comesTrue([&] { return state().player().isReady(); }));
    EXPECT_EQ(textOf("queueLabel"), "1 of 2");
    EXPECT_EQ(textOf("fileName"), "clip 9.mov");
    EXPECT_FALSE(item("previousClip").isEnabled());
    goTo(1);
    key(Qt::Key_N);
    waitForEditor();
    key(Qt::Key_Return);
    waitForNoEditor();
    exportAll();
    click("answer:Next Clip (2 of 2)");
    EXPECT_TRUE(comesTrue([&] { return textOf("fileName") == "clip 10.mov" && state().player().isReady(); }));
    EXPECT_TRUE(comesTrue([&] { return isShown("noHighlights"); }));

    key(Qt::Key_N);
    waitForEditor();
    key(Qt::Key_Return);
    waitForNoEditor();
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(comesTrue([&] { return isShown("answer:Cancel"); }));
    EXPECT_EQ(textOf("questionMessage"), "1 highlight haven't been exported yet. Closing will discard them.");
    click("answer:Cancel");
    EXPECT_TRUE(comesTrue([&] { return !isShown("answer:Cancel"); }));
    EXPECT_TRUE(state().videoFile().has_value());
    key(Qt::Key_W, Qt::ControlModifier);
    click("answer:Close and Discard");
    EXPECT_TRUE(comesTrue([&] { return isShown("landing"); }));
}

TEST_F(WindowStory, AFreezeIsShownWhileTheMoviePlays) {
    open(clip("game.mov", {.frames = 90}));
    goTo(1);
    key(Qt::Key_N);
    waitForEditor();
    key(Qt::Key_Return);
    waitForNoEditor();
    key(Qt::Key_Home);
    EXPECT_TRUE(comesTrue([&] { return state().currentTime() == CMTime::zero(); }));
    key(Qt::Key_Space);
    EXPECT_TRUE(comesTrue([&] { return isShown("previewBadge") && isShown("previewShape"); }));
    EXPECT_EQ(state().player().rate(), 0);
    EXPECT_TRUE(comesTrue([&] { return !isShown("previewBadge") && state().player().rate() > 0; }));
}

} // namespace
} // namespace zelvra::test
