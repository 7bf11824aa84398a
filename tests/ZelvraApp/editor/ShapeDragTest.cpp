// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/ShapeDrag.h"
#include "tests/ZelvraApp/editor/Shapes.h"

#include <gmock/gmock.h>

namespace zelvra::test {
namespace {

constexpr QRectF picture(0, 100, 1000, 500);
const DraftShape farAway = circleOf({0.9, 0.9}, {0.95, 0.9});

TEST(DrawingAShape, RunsFromThePressToThePointer) {
    ShapeDrag drag(Grip::Picture, {100, 200}, farAway, picture);
    drag.moveTo({110, 200});
    EXPECT_EQ(drag.moveTo({600, 450}), (ShapeAnchors{{0.1, 0.2}, {0.6, 0.7}}));
    EXPECT_EQ(drag.moveTo({50, 150}), (ShapeAnchors{{0.1, 0.2}, {0.05, 0.1}}));
}

TEST(DrawingAShape, NeedsThreePixelsOfMovementOnce) {
    ShapeDrag drag(Grip::Picture, {100, 200}, farAway, picture);
    EXPECT_EQ(drag.moveTo({102, 202}), std::nullopt);
    EXPECT_NE(drag.moveTo({103, 200}), std::nullopt);
    EXPECT_EQ(drag.moveTo({100, 200}), (ShapeAnchors{{0.1, 0.2}, {0.1, 0.2}}));
}

TEST(DrawingAShape, StaysInsideThePicture) {
    ShapeDrag drag(Grip::Picture, {100, 200}, farAway, picture);
    EXPECT_EQ(drag.moveTo({1400, 20}), (ShapeAnchors{{0.1, 0.2}, {1, 0}}));
    EXPECT_EQ(drag.moveTo({-5, 2000}), (ShapeAnchors{{0.1, 0.2}, {0, 1}}));
}

TEST(DrawingAShape, DoesNotBeginNearAHandle) {
    const DraftShape arrow = arrowOf({0.2, 0.5}, {0.8, 0.5});
    for (const QPointF at : {QPointF(200, 350), QPointF(500, 350), QPointF(815, 350)}) {
        EXPECT_EQ(ShapeDrag(Grip::Picture, at, arrow, picture).moveTo({700, 120}), std::nullopt);
    }
    EXPECT_NE(ShapeDrag(Grip::Picture, {820, 350}, arrow, picture).moveTo({700, 120}), std::nullopt);
}

TEST(MovingAShape, MovesBothPointsAlsoOutOfThePicture) {
    const DraftShape rectangle = rectangleOf({0.25, 0.25}, {0.5, 0.75});
    ShapeDrag drag(Grip::Move, {375, 350}, rectangle, picture);
    drag.moveTo({300, 300});
    EXPECT_EQ(drag.moveTo({-125, 350}), (ShapeAnchors{{-0.25, 0.25}, {0, 0.75}}));
    EXPECT_EQ(drag.moveTo({375, 350}), (ShapeAnchors{rectangle.p1, rectangle.p2}));
}

TEST(MovingAShape, MeasuresFromThePressAnywhereOnTheHandle) {
    const DraftShape circle = circleOf({0.5, 0.5}, {0.6, 0.5});
    ShapeDrag drag(Grip::Move, {510, 340}, circle, picture);
    EXPECT_EQ(drag.moveTo({510.5, 340}), std::nullopt);
    EXPECT_EQ(drag.moveTo({511, 340})->p1, (Point{0.501, 0.5}));
}

TEST(MovingAnEnd, LeavesTheOtherWhereItIs) {
    const DraftShape arrow = arrowOf({0.2, 0.5}, {0.8, 0.5});
    EXPECT_EQ(ShapeDrag(Grip::End1, {200, 350}, arrow, picture).moveTo({-300, 350}),
              (ShapeAnchors{{-0.3, 0.5}, {0.8, 0.5}}));
    EXPECT_EQ(ShapeDrag(Grip::End2, {800, 350}, arrow, picture).moveTo({800, 1350}),
              (ShapeAnchors{{0.2, 0.5}, {0.8, 2.5}}));
}

TEST(AnyDrag, DoesNothingOnAPictureWithoutSize) {
    EXPECT_EQ(ShapeDrag(Grip::Move, {0, 0}, farAway, {0, 0, 0, 500}).moveTo({50, 50}), std::nullopt);
}

} // namespace
} // namespace zelvra::test
