// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

namespace zelvra::test {
namespace {

class TimelineStrip : public ViewsFixture {
protected:
    /// The strip, once it has slid in.
    QQuickItem& strip() {
        EXPECT_TRUE(comesTrue([&] { return item("timelineRow").height() == 44; }));
        return item("timelineStrip");
    }
    /// The place of a time on a strip that shows `lo` to `hi`, on its middle line.
    QPointF at(double seconds, double lo, double hi) {
        return {(seconds - lo) / (hi - lo) * strip().width(), strip().height() / 2};
    }
    /// The length of a pixel of the strip, in seconds.
    double pixel(double lo, double hi) { return (hi - lo) / strip().width(); }
};

TEST_F(TimelineStrip, IsShownWhileThereIsSomethingOnIt) {
    openRecording();
    EXPECT_FALSE(isShown("timelineStrip"));
    highlight(300);
    EXPECT_TRUE(comesTrue([&] { return item("timelineRow").height() == 44; }));
    state().undo();
    EXPECT_TRUE(disappears("timelineStrip"));
}

TEST_F(TimelineStrip, SeeksWhereItIsClicked) {
    openRecording();
    highlight(590);
    click(strip(), at(300, 0, 600));
    EXPECT_TRUE(comesTrue([&] { return state().currentTime().seconds() > 200; }));
    EXPECT_NEAR(state().currentTime().seconds(), 300, 1 + pixel(0, 600));
    const QQuickItem& playhead = item("playhead");
    EXPECT_NEAR(playhead.x() + 1, at(state().currentTime().seconds(), 0, 600).x(), 0.5);
    click(strip(), QPointF(-4, 3));
    EXPECT_TRUE(comesTrue([&] { return state().currentTime() == CMTime::zero(); }));
}

TEST_F(TimelineStrip, ZoomsInOnATrim) {
    openRecording();
    trim(5, 590);
    EXPECT_TRUE(appears("trimBand"));
    EXPECT_FALSE(isShown("trimStartHandle") || isShown("stripStart"));
    trim(100, 120);
    EXPECT_EQ(text("stripStart"), "01:30.00");
    EXPECT_EQ(text("stripEnd"), "02:30.00");
    const QQuickItem& band = item("trimBand");
    EXPECT_NEAR(band.x(), at(100, 90, 150).x(), 0.01);
    EXPECT_NEAR(band.x() + band.width(), at(120, 90, 150).x(), 0.01);
    EXPECT_NEAR(item("trimEndHandle").x() + 2.5, at(120, 90, 150).x(), 0.01);
    EXPECT_TRUE(showsTip(strip(), "Drag to adjust the clip's end", at(120, 90, 150)));
    EXPECT_FALSE(isShown("playhead")) << "it is outside the window";
}

TEST_F(TimelineStrip, DragsAnEdgeOnAFrozenAxisInOneStepOfUndo) {
    openRecording();
    trim(100, 120);
    const QPointF start = at(100, 90, 150);
    press(strip(), start);
    move(strip(), start + QPointF(3, 0));
    move(strip(), at(110, 90, 150));
    EXPECT_EQ(text("stripStart"), "01:30.00");
    EXPECT_NEAR(trimStart(), 110, pixel(90, 150));
    move(strip(), at(140, 90, 150));
    EXPECT_NEAR(trimStart(), 119.9, 1e-9) << "past the other edge";
    move(strip(), at(105, 90, 150));
    release(strip(), at(105, 90, 150));
    EXPECT_NEAR(trimStart(), 105, pixel(90, 150));
    EXPECT_EQ(text("stripStart").substr(0, 5), trimStart() < 105 ? "01:34" : "01:35");
    EXPECT_EQ(state().currentTime(), CMTime::zero()) << "no click on the strip";
    state().undo();
    EXPECT_DOUBLE_EQ(trimStart(), 100);
    EXPECT_DOUBLE_EQ(trimEnd(), 120);
    drag(strip(), at(120, 90, 150), at(130, 90, 150));
    EXPECT_NEAR(trimEnd(), 130, pixel(90, 150));
    EXPECT_DOUBLE_EQ(trimStart(), 100);
}

TEST_F(TimelineStrip, LeavesATrimAloneIfItsHandleIsOnlyClicked) {
    openRecording();
    trim(100, 120);
    click(strip(), at(100, 90, 150) + QPointF(2, 0));
    EXPECT_DOUBLE_EQ(trimStart(), 100);
    state().undo();
    EXPECT_FALSE(state().trimRange()) << "the click was no step of undo";
}

TEST_F(TimelineStrip, EditsTheHighlightWhoseDotIsClicked) {
    openRecording();
    highlight(150);
    highlight(300);
    EXPECT_TRUE(showsTip(strip(), "05:00.00 — click to edit", at(300, 0, 600)));
    click(strip(), at(300, 0, 600) + QPointF(3, 3));
    EXPECT_TRUE(comesTrue([&] { return state().draft().has_value(); }));
    EXPECT_EQ(state().draft()->timestamp.seconds(), 300);
}

TEST_F(TimelineStrip, ShowsMarkedClipsAndDotsWhereTheyAre) {
    openRecording();
    mark(60, 120);
    highlight(300);
    wait(400);
    const QImage shown = picture();
    const auto pixelAt = [&](double seconds, double down = 0) {
        return shown.pixelColor(strip().mapToScene(at(seconds, 0, 600) + QPointF(0, down)).toPoint());
    };
    EXPECT_NEAR(pixelAt(90).red(), 255 * (0.14 + 0.86 * 0.28), 3) << "28 % white over the track";
    EXPECT_NEAR(pixelAt(200).red(), 255 * 0.14, 3);
    EXPECT_EQ(pixelAt(300), QColor(Qt::red));
    EXPECT_EQ(pixelAt(200, 8), QColor(Qt::black));
}

TEST_F(TimelineStrip, IsUsedByKeys) {
    openRecording();
    highlight(110);
    trim(100, 120);
    item("trimEndHandle").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Right);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(trimEnd(), 121.1, 0.01);
    item("timelineDots").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    EXPECT_TRUE(comesTrue([&] { return state().draft().has_value(); }));
}

} // namespace
} // namespace zelvra::test
