// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeHandles.h"
#include "ZelvraApp/editor/AspectFit.h"
#include "tests/ZelvraApp/editor/Shapes.h"

#include <gtest/gtest.h>

#include <numbers>

namespace zelvra::test {
namespace {

constexpr QRectF wide(0, 118.75, 1000, 562.5);

TEST(AspectFit, CentresTheLargestRectangleOfThePicturesShape) {
    EXPECT_EQ(aspectFitRect({1920, 1080}, {1000, 800}), wide);
    EXPECT_EQ(aspectFitRect({1080, 1920}, {1000, 800}), QRectF(275, 0, 450, 800));
    EXPECT_EQ(aspectFitRect({500, 400}, {1000, 800}), QRectF(0, 0, 1000, 800));
}

TEST(AspectFit, GivesTheWholeContainerIfEitherHasNoSize) {
    EXPECT_EQ(aspectFitRect({0, 1080}, {1000, 800}), QRectF(0, 0, 1000, 800));
    EXPECT_EQ(aspectFitRect({1920, -1}, {1000, 800}), QRectF(0, 0, 1000, 800));
    EXPECT_EQ(aspectFitRect({1920, 1080}, {1000, 0}), QRectF(0, 0, 1000, 0));
}

TEST(ShapeHandles, AreOnTheAnchorsAndOnTheCentreOrMiddle) {
    const DraftShape circle = circleOf({0.5, 0.5}, {0.6, 0.5});
    EXPECT_EQ(handlePoint(circle, Grip::Move, wide), QPointF(500, 400));
    EXPECT_EQ(handlePoint(circle, Grip::End2, wide), QPointF(600, 400));
    EXPECT_FALSE(hasHandle(circle.kind, Grip::End1));
    EXPECT_TRUE(hasHandle(circle.kind, Grip::End2));

    const DraftShape arrow = arrowOf({0.2, 0}, {0.8, 1});
    EXPECT_EQ(handlePoint(arrow, Grip::Move, wide), QPointF(500, 400));
    EXPECT_EQ(handlePoint(arrow, Grip::End1, wide), QPointF(200, 118.75));
    EXPECT_EQ(handlePoint(arrow, Grip::End2, wide), QPointF(800, 681.25));
    EXPECT_TRUE(hasHandle(arrow.kind, Grip::End1));
}

TEST(ShapeHandles, ReactSixPixelsBeyondTheirDisc) {
    EXPECT_EQ(handleHitRadius(Grip::Move), 18);
    EXPECT_EQ(handleHitRadius(Grip::End1), 16);
    EXPECT_EQ(handleRadius(Grip::End2), 10);
}

TEST(ShapeHandles, PointAlongTheShapeAsItIsSeen) {
    const QRectF twiceAsWide(0, 0, 200, 100);
    EXPECT_DOUBLE_EQ(shapeAngle(arrowOf({0, 0}, {0.5, 1}), twiceAsWide), std::numbers::pi / 4);
    EXPECT_DOUBLE_EQ(shapeAngle(arrowOf({0.5, 0}, {0, 0}), twiceAsWide), std::numbers::pi);
    EXPECT_EQ(shapeAngle(arrowOf({0.5, 0.5}, {0.5, 0.5}), twiceAsWide), 0);
}

TEST(ShapeHandles, PreventNewShapesWithinTwentyPixels) {
    const QSizeF picture(1000, 562.5);
    const DraftShape arrow = arrowOf({0.2, 0.5}, {0.8, 0.5});
    for (const double handle : {200.0, 500.0, 800.0}) {
        EXPECT_TRUE(dragStartsOnHandle(arrow, {handle + 19.99, 281.25}, picture)) << handle;
        EXPECT_FALSE(dragStartsOnHandle(arrow, {handle + 20, 281.25}, picture)) << handle;
        EXPECT_TRUE(dragStartsOnHandle(arrow, {handle - 12, 281.25 + 15}, picture)) << handle;
        EXPECT_FALSE(dragStartsOnHandle(arrow, {handle - 12, 281.25 + 16}, picture)) << handle;
    }
    // A circle's middle between its points is free.
    EXPECT_FALSE(dragStartsOnHandle(circleOf({0.2, 0.5}, {0.8, 0.5}), {500, 281.25}, picture));
}

} // namespace
} // namespace zelvra::test
