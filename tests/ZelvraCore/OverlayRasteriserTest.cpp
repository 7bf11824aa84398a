// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/OverlayRasteriser.h"
#include "ZelvraCore/records/ZVError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

namespace zelvra {
namespace {

using enum HighlightShapeKind;

constexpr Color blue{0.04, 0.52, 1.0, 1.0};

Image noisyPicture(int width, int height) {
    Image::Raster raster{width, height,
                         std::vector<std::uint8_t>(static_cast<std::size_t>(width * height * 4))};
    for (std::size_t i = 0; i < raster.rgba.size(); ++i) {
        raster.rgba[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(i * 2654435761u >> 13);
    }
    return {std::make_shared<Image::Raster>(std::move(raster)), ColorDescription{9, 16, 9, true, 3}};
}

HighlightShape shapeOf(HighlightShapeKind kind, Point p1, Point p2, double ratio, Color color = blue) {
    return {Uuid{}, kind, p1, p2, color, ratio};
}

double distanceToLine(Point p, Point a, Point b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length2 = dx * dx + dy * dy;
    const double t = length2 == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length2, 0.0, 1.0);
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

/// Distance from a point to the middle of the drawn line, in pixels, from the figure's definition alone.
double distanceToFigure(const HighlightShape& shape, Point p, double width, double height) {
    const Point a{shape.p1.x * width, shape.p1.y * height};
    const Point b{shape.p2.x * width, shape.p2.y * height};
    if (shape.kind == circle) {
        return std::abs(std::hypot(p.x - a.x, p.y - a.y) - std::hypot(b.x - a.x, b.y - a.y));
    }
    if (shape.kind == rectangle) {
        const Point c{b.x, a.y};
        const Point d{a.x, b.y};
        return std::min({distanceToLine(p, a, c), distanceToLine(p, c, b), distanceToLine(p, b, d),
                         distanceToLine(p, d, a)});
    }
    const double line = std::max(shape.strokeWidthRatio * height, 1.0);
    const double head = std::max(4 * line, 0.018 * height);
    double distance = distanceToLine(p, a, b);
    for (const double side : {-1.0, 1.0}) {
        const double angle = std::atan2(b.y - a.y, b.x - a.x) + std::numbers::pi + side * 0.4487989505128276;
        distance = std::min(
            distance, distanceToLine(p, b, {b.x + head * std::cos(angle), b.y + head * std::sin(angle)}));
    }
    return distance;
}

struct Drawn {
    Image before;
    Image after;
    int offset(int x, int y) const { return (y * before.width() + x) * 4; }
    std::uint8_t was(int at) const { return before.raster().rgba[static_cast<std::size_t>(at)]; }
    std::uint8_t is(int at) const { return after.raster().rgba[static_cast<std::size_t>(at)]; }
    int coverage(int x, int y) const {
        return (*after.coverage())[static_cast<std::size_t>(offset(x, y) / 4)];
    }
};

/// Every pixel well inside the line has the line's colour, every pixel well outside is untouched byte for
/// byte, and coverage distinguishes the two.
void expectFigure(const HighlightShape& shape, int width, int height) {
    const Image before = noisyPicture(width, height);
    const Drawn drawn{before, drawShape(before, shape)};
    const double half = std::max(shape.strokeWidthRatio * height, 1.0) / 2;
    int faults = 0;
    int inside = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int at = drawn.offset(x, y);
            const double distance = distanceToFigure(shape, {x + 0.5, y + 0.5}, width, height);
            const bool same = std::equal(&before.raster().rgba[static_cast<std::size_t>(at)],
                                         &before.raster().rgba[static_cast<std::size_t>(at)] + 4,
                                         &drawn.after.raster().rgba[static_cast<std::size_t>(at)]);
            if (distance > half + 0.75) {
                faults += !same || drawn.coverage(x, y) != 0;
            } else if (distance < half - 0.75) {
                ++inside;
                faults += drawn.is(at) != 10 || drawn.is(at + 1) != 133 || drawn.is(at + 2) != 255 ||
                          drawn.is(at + 3) != 255 || drawn.coverage(x, y) != 255;
            }
        }
    }
    EXPECT_EQ(faults, 0);
    EXPECT_TRUE(inside > 0 || half < 1);
}

struct Figure {
    const char* what;
    HighlightShape shape;
    int width = 192;
    int height = 108;
};

class OverlayFigure : public testing::TestWithParam<Figure> {};

TEST_P(OverlayFigure, CoversExactlyTheStrokedOutline) {
    SCOPED_TRACE(GetParam().what);
    expectFigure(GetParam().shape, GetParam().width, GetParam().height);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, OverlayFigure,
    testing::Values(
        Figure{"circle of radius 192 in landscape", shapeOf(circle, {.5, .5}, {.6, .5}, .005), 1920, 1080},
        Figure{"circle of radius 108 in portrait", shapeOf(circle, {.5, .5}, {.6, .5}, .005), 1080, 1920},
        Figure{"circle partly outside", shapeOf(circle, {-.2, 1.3}, {.6, .5}, .05)},
        Figure{"circle far away", shapeOf(circle, {-400, .5}, {.5, .5}, .05)},
        Figure{"circle of radius 0", shapeOf(circle, {.5, .5}, {.5, .5}, .1)},
        Figure{"line held at one pixel", shapeOf(circle, {.5, .5}, {.6, .5}, .0001)},
        Figure{"rectangle", shapeOf(rectangle, {.2, .3}, {.8, .7}, .06)},
        Figure{"rectangle without width", shapeOf(rectangle, {.3, .2}, {.3, .8}, .06)},
        Figure{"rectangle without extent", shapeOf(rectangle, {.3, .3}, {.3, .3}, .06)},
        Figure{"arrow whose head follows the line", shapeOf(arrow, {.1, .1}, {.8, .7}, .05)},
        Figure{"thin arrow with the least head", shapeOf(arrow, {.9, .8}, {.3, .2}, .0025), 960, 800},
        Figure{"arrow upwards in portrait", shapeOf(arrow, {.5, .9}, {.4, .1}, .02), 101, 203},
        Figure{"arrow without length", shapeOf(arrow, {.5, .5}, {.5, .5}, .05)}));

TEST(DrawShape, RectangleIsTheSameFromAnyTwoOppositeCorners) {
    const Image picture = noisyPicture(160, 90);
    EXPECT_EQ(drawShape(picture, shapeOf(rectangle, {.8, .7}, {.2, .3}, .05)).raster().rgba,
              drawShape(picture, shapeOf(rectangle, {.2, .3}, {.8, .7}, .05)).raster().rgba);
}

TEST(DrawShape, BlendsATranslucentColourAndKeepsTheColourSpace) {
    const Image before = noisyPicture(64, 64);
    const Drawn drawn{before,
                      drawShape(before, shapeOf(rectangle, {.25, .25}, {.75, .75}, .2, {1, 0, 0, .5}))};
    const int at = drawn.offset(16, 32);
    EXPECT_NEAR(drawn.is(at), 127.5 + drawn.was(at) / 2.0, 1);
    EXPECT_NEAR(drawn.is(at + 1), drawn.was(at + 1) / 2.0, 1);
    EXPECT_EQ(drawn.is(at + 3), 255);
    EXPECT_EQ(drawn.coverage(16, 32), 128);
    EXPECT_EQ(drawn.after.color(), before.color());
    EXPECT_EQ(before.raster().rgba, noisyPicture(64, 64).raster().rgba);
}

TEST(DrawShape, RemembersWhatEarlierFiguresCovered) {
    const Image once = drawShape(noisyPicture(64, 64), shapeOf(circle, {.25, .25}, {.25, .25}, .2));
    const Image twice = drawShape(once, shapeOf(circle, {.75, .75}, {.75, .75}, .2));
    EXPECT_EQ((*twice.coverage())[16 * 64 + 16], 255);
    EXPECT_EQ((*twice.coverage())[48 * 64 + 48], 255);
    EXPECT_EQ((*twice.coverage())[16 * 64 + 48], 0);
}

TEST(DrawShape, SurvivesAbsurdNumbers) {
    const Image picture = noisyPicture(32, 32);
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double far = std::numeric_limits<double>::infinity();
    for (const HighlightShapeKind kind : {circle, arrow, rectangle}) {
        EXPECT_EQ(drawShape(picture, shapeOf(kind, {nan, 0}, {1, 1}, .1)).raster().rgba,
                  picture.raster().rgba);
        drawShape(picture, shapeOf(kind, {-far, far}, {1e300, -1e300}, far));
        drawShape(picture, shapeOf(kind, {.1, .1}, {.9, .9}, nan, {nan, -1, 7, 2}));
    }
}

TEST(DrawShape, RefusesAPictureThatNoRasterHolds) {
    const Image empty(std::make_shared<Image::Raster>(), {});
    const Image tooWide(
        std::make_shared<Image::Raster>(Image::Raster{40000, 1, std::vector<std::uint8_t>(160000)}), {});
    for (const Image& image : {empty, tooWide}) {
        try {
            drawShape(image, shapeOf(circle, {.5, .5}, {.6, .5}, .01));
            FAIL() << "drew on a picture " << image.width() << " wide";
        } catch (const ZVError& error) {
            EXPECT_EQ(error.description(), "CGContext creation failed: overlay");
        }
    }
}

} // namespace
} // namespace zelvra
