// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeOutline.h"
#include "ZelvraCore/OverlayRasteriser.h"
#include "tests/ZelvraApp/editor/Shapes.h"

#include <QImage>
#include <QPainter>
#include <QPainterPathStroker>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

namespace zelvra::test {
namespace {

constexpr QRectF picture(0, 118.75, 1000, 562.5);

void expectNear(const QPainterPath::Element& element, double x, double y) {
    EXPECT_NEAR(element.x, x, 1e-9);
    EXPECT_NEAR(element.y, y, 1e-9);
}

TEST(ShapeOutline, StrokesAFractionOfThePicturesHeightAndAtLeastOnePixel) {
    DraftShape arrow = arrowOf({0.2, 0.5}, {0.8, 0.5});
    EXPECT_DOUBLE_EQ(shapeOutline(arrow, picture).pen.widthF(), 2.8125);
    arrow.strokeWidthRatio = 0.02;
    EXPECT_DOUBLE_EQ(shapeOutline(arrow, picture).pen.widthF(), 11.25);
    arrow.strokeWidthRatio = 0.001;
    EXPECT_DOUBLE_EQ(shapeOutline(arrow, picture).pen.widthF(), 1);
}

TEST(ShapeOutline, KeepsACirclesStrokeInsideItsRadius) {
    const ShapeOutline outline = shapeOutline(circleOf({0.5, 0.5}, {0.6, 0.5}), picture);
    const QRectF middleOfStroke = outline.path.boundingRect();
    EXPECT_NEAR(middleOfStroke.left(), 400 + 2.8125 / 2, 1e-9);
    EXPECT_NEAR(middleOfStroke.bottom(), 500 - 2.8125 / 2, 1e-9);
    EXPECT_EQ(outline.pen.capStyle(), Qt::FlatCap);
}

TEST(ShapeOutline, FillsATinyCircleAndNoMore) {
    const ShapeOutline outline = shapeOutline(circleOf({0.5, 0.5}, {0.5, 0.5}), picture);
    QPainterPathStroker stroker(outline.pen);
    const QRectF covered = stroker.createStroke(outline.path).boundingRect();
    EXPECT_NEAR(covered.width(), 2, 0.05);
    EXPECT_NEAR(covered.center().x(), 500, 0.05);
}

TEST(ShapeOutline, DrawsAnArrowsHeadWithSidesOfFourStrokesAndAtLeastEighteenPixels) {
    const QPainterPath thin = arrowPath({200, 400}, {800, 400}, 2.8125);
    ASSERT_EQ(thin.elementCount(), 5);
    expectNear(thin.elementAt(0), 200, 400);
    expectNear(thin.elementAt(1), 800, 400);
    expectNear(thin.elementAt(2), 800 - 18 * 0.9009688679024191, 400 + 18 * 0.4338837391175581);
    expectNear(thin.elementAt(3), 800, 400);
    expectNear(thin.elementAt(4), 800 - 18 * 0.9009688679024191, 400 - 18 * 0.4338837391175581);
    EXPECT_TRUE(thin.elementAt(2).isMoveTo());
    expectNear(arrowPath({200, 400}, {800, 400}, 11.25).elementAt(2), 800 - 45 * 0.9009688679024191,
               400 + 45 * 0.4338837391175581);
}

TEST(ShapeOutline, OpensTheHeadOfAnArrowWithoutLengthToTheLeft) {
    const QPainterPath path = arrowPath({500, 400}, {500, 400}, 2);
    const int last = path.elementCount() - 1;
    EXPECT_LT(path.elementAt(last).x, 500);
    EXPECT_LT(path.elementAt(last - 2).x, 500);
}

TEST(ShapeOutline, SpansARectangleBetweenItsCornersInAnyOrder) {
    const QRectF expected(200, 118.75 + 56.25, 300, 225);
    for (const DraftShape& shape : {rectangleOf({0.2, 0.1}, {0.5, 0.5}), rectangleOf({0.5, 0.5}, {0.2, 0.1}),
                                    rectangleOf({0.2, 0.5}, {0.5, 0.1})}) {
        const QRectF spanned = shapeOutline(shape, picture).path.boundingRect();
        EXPECT_NEAR(spanned.x(), expected.x(), 1e-9);
        EXPECT_NEAR(spanned.y(), expected.y(), 1e-9);
        EXPECT_NEAR(spanned.width(), expected.width(), 1e-9);
        EXPECT_NEAR(spanned.height(), expected.height(), 1e-9);
    }
}

TEST(ShapeOutline, DrawsNothingThatIsNoNumber) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(shapeOutline(circleOf({0.5, none}, {0.6, 0.5}), picture).path.isEmpty());
    EXPECT_TRUE(
        shapeOutline(shapeOf(HighlightShapeKind::arrow, {0, 0}, {1, 1}, none), picture).path.isEmpty());
}

constexpr QSize exported(640, 360);

/// What a picture that was black shows of a red shape.
QRectF extentOf(const QImage& drawn) {
    QRect extent;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            if (qRed(drawn.pixel(x, y)) > 127) {
                extent |= QRect(x, y, 1, 1);
            }
        }
    }
    return extent;
}

QRectF extentOnScreen(const DraftShape& shape) {
    QImage screen(exported, QImage::Format_RGB32);
    screen.fill(Qt::black);
    QPainter painter(&screen);
    painter.setRenderHint(QPainter::Antialiasing);
    ShapeOutline outline = shapeOutline(shape, QRectF({0, 0}, exported));
    outline.pen.setColor(Qt::red);
    painter.strokePath(outline.path, outline.pen);
    painter.end();
    return extentOf(screen);
}

QRectF extentInExport(const DraftShape& shape) {
    Image::Raster black{.width = exported.width(), .height = exported.height(), .rgba = {}};
    for (int i = 0; i < black.width * black.height; ++i) {
        black.rgba.insert(black.rgba.end(), {0, 0, 0, 255});
    }
    const Image frame(std::make_shared<const Image::Raster>(std::move(black)), {});
    const Image drawn = drawShape(frame, {.id = shape.id,
                                          .kind = shape.kind,
                                          .p1 = shape.p1,
                                          .p2 = shape.p2,
                                          .strokeColor = shape.color,
                                          .strokeWidthRatio = shape.strokeWidthRatio});
    return extentOf(QImage(drawn.raster().rgba.data(), drawn.width(), drawn.height(),
                           QImage::Format_RGBA8888_Premultiplied));
}

TEST(ShapeOutline, HasItsAnchorsWhereTheExportHasThem) {
    const DraftShape circle = circleOf({0.4, 0.6}, {0.5, 0.7});
    const QPointF apart = extentOnScreen(circle).center() - extentInExport(circle).center();
    EXPECT_LE(std::abs(apart.x()), 1);
    EXPECT_LE(std::abs(apart.y()), 1);
    EXPECT_NEAR(extentOnScreen(circle).width(), extentInExport(circle).width(), 4);

    for (const DraftShape& shape : {rectangleOf({0.2, 0.1}, {0.7, 0.8}), arrowOf({0.1, 0.5}, {0.9, 0.5}),
                                    arrowOf({0.9, 0.2}, {0.1, 0.2})}) {
        const QRectF onScreen = extentOnScreen(shape);
        const QRectF inExport = extentInExport(shape);
        EXPECT_NEAR(onScreen.left(), inExport.left(), 1);
        EXPECT_NEAR(onScreen.right(), inExport.right(), 1);
        EXPECT_NEAR(onScreen.center().y(), inExport.center().y(), 1);
    }
}

} // namespace
} // namespace zelvra::test
