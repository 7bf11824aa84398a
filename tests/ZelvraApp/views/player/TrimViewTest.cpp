// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/NumberedMovie.h"
#include "tests/support/window/WindowFixture.h"

namespace zelvra::test {

namespace {

class TrimBar : public WindowFixture {
protected:
    void SetUp() override {
        open(movieFile({.frames = 300}));
        state().beginTrim();
        EXPECT_TRUE(comesTrue([&] { return isShown("filmStrip"); }));
    }
    /// Drags that handle to that part of the movie.
    void dragTo(const QString& handle, double fraction) {
        QQuickItem& end = item(handle);
        QQuickItem& strip = item("filmStrip");
        const QPointF from(end.width() / 2, end.height() / 2);
        const double shift =
            strip.width() * fraction - (handle == "trimInHandle" ? end.x() + end.width() : end.x());
        drag(end, from, from + QPointF(shift, 0));
    }
};

} // namespace

TEST_F(TrimBar, HandlesAreDraggedAndConfirmed) {
    EXPECT_EQ(textOf("trimRangeText"), "00:00.00 – 00:10.00");
    dragTo("trimInHandle", 0.2);
    const double in = state().player().currentTime().seconds();
    EXPECT_NEAR(in, 2, 0.05); // the picture follows
    dragTo("trimOutHandle", 0.6);
    EXPECT_NEAR(state().player().currentTime().seconds(), 6, 0.05);
    EXPECT_EQ(state().trimRange(), std::nullopt);
    key(Qt::Key_Return);
    EXPECT_TRUE(comesTrue([&] { return state().trimRange().has_value(); }));
    EXPECT_NEAR(state().trimRange()->start.seconds(), in, 0.001);
    EXPECT_NEAR(state().trimRange()->end().seconds(), 6, 0.05);
    EXPECT_FALSE(isShown("filmStrip"));
}

TEST_F(TrimBar, EndsStayApart) {
    dragTo("trimInHandle", 0.5);
    dragTo("trimOutHandle", 0.1);
    click("trimConfirmButton");
    EXPECT_TRUE(comesTrue([&] { return state().trimRange().has_value(); }));
    EXPECT_NEAR(state().trimRange()->duration.seconds(), 0.1, 1e-9);
}

TEST_F(TrimBar, CancellingChangesNothing) {
    dragTo("trimInHandle", 0.5);
    key(Qt::Key_Escape);
    EXPECT_TRUE(comesTrue([&] { return !isShown("filmStrip"); }));
    EXPECT_EQ(state().trimRange(), std::nullopt);
    state().beginTrim();
    click("trimCancelButton");
    EXPECT_TRUE(comesTrue([&] { return !isShown("filmStrip"); }));
    EXPECT_FALSE(state().canUndo());
}

TEST_F(TrimBar, TheFilmStripShowsTheWholeMovie) {
    QQuickItem& strip = item("filmStrip");
    const QRect place = strip.mapRectToScene(QRectF(0, 0, strip.width(), strip.height())).toRect();
    // The texture of numbered pictures is never black over a whole column.
    const auto isFilledAt = [&](const QImage& shown, int x) {
        for (int y = place.top(); y < place.bottom(); ++y) {
            if (qGray(shown.pixel(x, y)) > 60) {
                return true;
            }
        }
        return false;
    };
    for (int part = 1; part < 10; ++part) {
        const int x = place.left() + place.width() * part / 10;
        EXPECT_TRUE(comesTrue([&] { return isFilledAt(picture(), x); })) << part;
    }
}

} // namespace zelvra::test
