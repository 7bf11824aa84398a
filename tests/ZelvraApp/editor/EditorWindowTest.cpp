// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/AspectFit.h"
#include "ZelvraApp/editor/PictureMapping.h"
#include "ZelvraApp/editor/ShapeRenderer.h"
#include "ZelvraApp/session/Colors.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/window/WindowFixture.h"

#include <QPainter>

namespace zelvra::test {
namespace {

/// The editor over the first picture of a movie.
class Editor : public WindowFixture {
protected:
    Editor() {
        open(movieFile({.width = 640, .height = 360}));
        run(state().addHighlightAtCurrentTime());
    }

    void run(QCoro::Task<> operation) {
        const QCoro::Task<> running = std::move(operation);
        EXPECT_TRUE(comesTrue([&] { return state().draft().has_value() && isShown("editorCanvas"); }));
        EXPECT_TRUE(comesTrue([&] { return picture(canvas()).isEmpty() == false; }));
    }
    const DraftShape& shape() { return state().draft()->shape; }
    QQuickItem& canvas() { return item("editorCanvas"); }
    static QRectF picture(QQuickItem& canvas) {
        return aspectFitRect({640, 360}, {canvas.width(), canvas.height()});
    }
    QPointF onCanvas(const Point& point) { return viewPoint(point, picture(canvas())); }
    /// On the canvas, from and to fractions of the picture.
    void dragOver(const Point& from, const Point& to) { drag(canvas(), onCanvas(from), onCanvas(to)); }
    /// Within what rounding the pointer to whole pixels makes.
    void expectAt(const Point& actual, const Point& expected) {
        const QPointF away = onCanvas(actual) - onCanvas(expected);
        EXPECT_LE(std::abs(away.x()), 1) << actual.x << " instead of " << expected.x;
        EXPECT_LE(std::abs(away.y()), 1) << actual.y << " instead of " << expected.y;
    }
    void openColorPicker() {
        click("colorWell");
        EXPECT_TRUE(comesTrue([&] {
            const double field = item("colorField").mapToScene({0, 140}).y();
            const double done = item("colorDone").mapToScene({0, 0}).y();
            return field < done && done < item("colorWell").mapToScene({0, 0}).y();
        })) << "it stands above its well";
    }
    bool isClosed() {
        return comesTrue([&] { return !isShown("editorCanvas"); });
    }
};

TEST_F(Editor, ShowsWhatIsEditedAndItsValues) {
    EXPECT_EQ(textOf("editorTitle"), "New Highlight");
    EXPECT_EQ(textOf("editorMoment"), "at 00:00.00");
    EXPECT_EQ(textOf("editorHint"),
              "Drag on the frame to draw a new shape. The colored handle moves it; the white arrows resize.");
    EXPECT_EQ(textOf("sizeText"), "6.0%");
    EXPECT_EQ(textOf("strokeText"), "0.40%");
    EXPECT_EQ(textOf("freezeStepper"), "3.0s");
    EXPECT_EQ(textOf("commitDraft"), "Add Highlight");
    EXPECT_GE(canvas().window()->width(), 880);
    EXPECT_GE(canvas().window()->height(), 640);
    EXPECT_EQ(canvas().window()->transientParent(), &window());
}

TEST_F(Editor, DrawsEachKindFromThePressToThePointer) {
    for (const QString kind : {"circle", "arrow", "rectangle"}) {
        click("tool:" + kind);
        dragOver({0.1, 0.15}, {0.25, 0.8});
        EXPECT_EQ(rawValue(shape().kind), kind.toStdString());
        expectAt(shape().p1, {0.1, 0.15});
        expectAt(shape().p2, {0.25, 0.8});
        EXPECT_EQ(isShown("sizeSlider"), kind == "circle");
        EXPECT_EQ(isShown("end1Handle"), kind != "circle");
    }
    dragOver({0.9, 0.9}, {3, 3});
    EXPECT_EQ(shape().p2, (Point{1, 1}));
}

TEST_F(Editor, MovesAndReshapesAnywhereOnTheHandles) {
    click("tool:arrow");
    drag(item("moveHandle"), {10, 22}, {10 + 60, 22 + 45});
    const QRectF frame = picture(canvas());
    const Point way = normalised({60, 45}, frame.size());
    expectAt(shape().p1, {0.3 + way.x, 0.5 + way.y});
    expectAt(shape().p2, {0.7 + way.x, 0.5 + way.y});

    drag(item("end1Handle"), {16, 16}, {16 - 600, 16});
    EXPECT_LT(shape().p1.x, 0);
    expectAt(shape().p2, {0.7 + way.x, 0.5 + way.y});
    drag(item("end2Handle"), {16, 16}, {16, 16 + 45});
    expectAt(shape().p2, {0.7 + way.x, 0.5 + 2 * way.y});
}

TEST_F(Editor, ShowsUnderThePointerWhatADragWillDo) {
    const auto cursor = [this] { return canvas().window()->cursor().shape(); };
    const std::vector<std::pair<QString, QString>> tips = {
        {"circle", "Drag to change the circle's size"},
        {"arrow", "Drag to move this end of the arrow"},
        {"rectangle", "Drag to resize"},
    };
    for (const auto& [kind, tip] : tips) {
        click("tool:" + kind);
        hover(item("moveHandle"));
        EXPECT_TRUE(comesTrue([&] { return cursor() == Qt::OpenHandCursor; }));
        hover(item("end2Handle"));
        EXPECT_TRUE(comesTrue([&] { return cursor() == Qt::CrossCursor; }));
        hover(item("end2Handle"), QPointF(1, 1));
        EXPECT_TRUE(comesTrue([&] { return cursor() == Qt::ArrowCursor; })) << "handles are round";
        EXPECT_EQ(item("end2Handle").property("tip").toString(), tip);
    }
    EXPECT_EQ(item("moveHandle").property("tip").toString(), "Drag to move the shape");
}

TEST_F(Editor, DrawsNoNewShapeNearAHandle) {
    const DraftShape before = shape();
    const QPointF centre = onCanvas({0.5, 0.5});
    drag(canvas(), centre - QPointF(19, 0), centre - QPointF(200, 100));
    EXPECT_EQ(shape().p1, before.p1);
    drag(canvas(), centre - QPointF(22, 0), centre - QPointF(200, 100));
    EXPECT_NE(shape().p1, before.p1);
}

TEST_F(Editor, SetsHandlesOnTheShapeAndPaintsItThere) {
    click("tool:rectangle");
    click(item("strokeSlider"), QPointF(item("strokeSlider").width() - 1, 8));
    dragOver({0.2, 0.2}, {0.6, 0.7});
    QQuickItem& handle = item("end2Handle");
    const QPointF middle = handle.mapToItem(&canvas(), QPointF(handle.width() / 2, handle.height() / 2));
    EXPECT_LE((middle - onCanvas(shape().p2)).manhattanLength(), 2);
    wait(50);
    const QImage shown = canvas().window()->grabWindow();
    const auto colorAt = [&](const Point& point) {
        return shown.pixelColor(canvas().mapToScene(onCanvas(point)).toPoint());
    };
    const QColor stroke(0x0A, 0x84, 0xFF);
    EXPECT_EQ(colorAt({shape().p1.x, 0.45}), stroke);
    EXPECT_EQ(colorAt({0.45, shape().p2.y}), stroke);
    EXPECT_NE(colorAt({0.3, 0.3}), stroke);
}

TEST_F(Editor, ChangesSizeStrokeColorAndDurationAtOnce) {
    click(item("sizeSlider"), QPointF(item("sizeSlider").width() - 1, 8));
    EXPECT_EQ(textOf("sizeText"), "45.0%");
    EXPECT_NEAR(state().draft()->circleRadiusRatio(), 0.45, 1e-9);
    click(item("strokeSlider"), QPointF(1, 8));
    EXPECT_EQ(textOf("strokeText"), "0.10%");
    click("freezeStepperMore");
    EXPECT_EQ(textOf("freezeStepper"), "3.5s");
    for (int i = 0; i < 8; ++i) {
        click("freezeStepperLess");
    }
    EXPECT_EQ(state().draft()->durationSec, 0.5);

    openColorPicker();
    click("swatch:#30D158");
    EXPECT_EQ(hexString(shape().color), "#30D158");
    key(Qt::Key_Return);
    EXPECT_TRUE(comesTrue([&] { return !isShown("colorHex"); }));
    EXPECT_TRUE(state().draft()) << "Return in the colour picker is not the editor's";
}

TEST_F(Editor, RestoresTheColorWhenChoosingIsCancelled) {
    openColorPicker();
    click("colorHex");
    key(Qt::Key_A, Qt::ControlModifier);
    type("ff8000");
    EXPECT_EQ(hexString(shape().color), "#FF8000");
    key(Qt::Key_Escape);
    EXPECT_TRUE(comesTrue([&] { return !isShown("colorHex"); }));
    ASSERT_TRUE(state().draft());
    EXPECT_EQ(hexString(shape().color), "#0A84FF");
}

TEST_F(Editor, IsUsedByKeysAlone) {
    const Point before = shape().p1;
    for (const char* tool : {"tool:circle", "tool:arrow", "tool:rectangle"}) {
        key(Qt::Key_Tab);
        EXPECT_TRUE(item(tool).hasActiveFocus()) << tool;
    }
    key(Qt::Key_Tab);
    EXPECT_TRUE(item("moveHandle").hasActiveFocus());
    key(Qt::Key_Right);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_NEAR(shape().p1.x, before.x + 1.0 / 640, 1e-12);
    EXPECT_NEAR(shape().p1.y, before.y + 10.0 / 360, 1e-12);
    key(Qt::Key_Tab);
    EXPECT_TRUE(item("end2Handle").hasActiveFocus());
    key(Qt::Key_Tab);
    EXPECT_TRUE(item("colorWell").hasActiveFocus());
    key(Qt::Key_Tab);
    key(Qt::Key_Right);
    EXPECT_EQ(textOf("sizeText"), "6.4%");
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_End);
    EXPECT_EQ(textOf("freezeStepper"), "10.0s");
}

TEST_F(Editor, AddsTheHighlightOnReturnFromAnywhere) {
    dragOver({0.1, 0.2}, {0.2, 0.2});
    item("cancelDraft").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    EXPECT_TRUE(isClosed());
    ASSERT_EQ(state().highlights().size(), 1U);
    EXPECT_TRUE(state().showDefaultsScopePrompt());
}

TEST_F(Editor, DiscardsOnEscapeCancelAndClosing) {
    const std::vector<std::function<void()>> ways = {
        [this] { key(Qt::Key_Escape); },
        [this] { click("cancelDraft"); },
        [this] { canvas().window()->close(); },
    };
    for (const auto& giveUp : ways) {
        click("tool:arrow");
        giveUp();
        EXPECT_TRUE(isClosed());
        EXPECT_FALSE(state().draft());
        EXPECT_TRUE(state().highlights().empty());
        run(state().addHighlightAtCurrentTime());
        EXPECT_EQ(shape().kind, HighlightShapeKind::circle);
    }
}

TEST_F(Editor, EditsAHighlightAgain) {
    click("commitDraft");
    EXPECT_TRUE(isClosed());
    run(state().editHighlight(state().highlights()[0]));
    EXPECT_EQ(textOf("editorTitle"), "Edit Highlight");
    EXPECT_EQ(textOf("commitDraft"), "Update Highlight");
    drag(item("moveHandle"), {18, 18}, {118, 18});
    click("commitDraft");
    EXPECT_TRUE(isClosed());
    ASSERT_EQ(state().highlights().size(), 1U);
    EXPECT_GT(state().highlights()[0].shape.p1.x, 0.55);
}

TEST(ShapeRenderer, FitsAHighlightsPictureIntoItself) {
    ShapeRenderer renderer;
    renderer.setSize({1000, 800});
    renderer.setPictureSize({1920, 1080});
    EXPECT_EQ(renderer.imageRect(), QRectF(0, 118.75, 1000, 562.5));
    const HighlightShape shape{.id = {},
                               .kind = HighlightShapeKind::rectangle,
                               .p1 = {0.2, 0.2},
                               .p2 = {0.8, 0.8},
                               .strokeColor = {1, 0, 0, 1},
                               .strokeWidthRatio = 0.02};
    renderer.setHighlight(Highlight{.id = {}, .timestamp = {}, .duration = {}, .shape = shape});
    QImage screen(1000, 800, QImage::Format_RGB32);
    screen.fill(Qt::black);
    QPainter painter(&screen);
    renderer.paint(&painter);
    EXPECT_EQ(screen.pixelColor(200, 400), QColor(Qt::red));
    EXPECT_EQ(screen.pixelColor(500, 231), QColor(Qt::red));
    EXPECT_EQ(screen.pixelColor(500, 400), QColor(Qt::black));
    renderer.setHighlight(std::nullopt);
    screen.fill(Qt::black);
    renderer.paint(&painter);
    EXPECT_EQ(screen.pixelColor(200, 400), QColor(Qt::black));
}

} // namespace
} // namespace zelvra::test
