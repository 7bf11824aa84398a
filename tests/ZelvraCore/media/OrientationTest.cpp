// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/Orientation.h"

#include "ZelvraCore/media/VideoFormat.h"
#include "ZelvraCore/media/pixels/PictureConversion.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

std::vector<Orientation> allOrientations() {
    std::vector<Orientation> all;
    for (int turns = 0; turns < 4; ++turns) {
        all.push_back({false, turns});
        all.push_back({true, turns});
    }
    return all;
}

TEST(Orientation, IsReadFromMatricesOfCameras) {
    EXPECT_EQ(orientationOf({}), Orientation());
    EXPECT_EQ(orientationOf({0, 1, -1, 0, 1080, 0}), (Orientation{false, 1}));
    EXPECT_EQ(orientationOf({-1, 0, 0, -1, 0, 0}), (Orientation{false, 2}));
    EXPECT_EQ(orientationOf({0, -65536, 65536, 0, 0, 0}), (Orientation{false, 3}));
    EXPECT_EQ(orientationOf({-1, 0, 0, 1, 0, 0}), (Orientation{true, 0}));
    EXPECT_EQ(orientationOf({1, 0, 0, -1, 0, 0}), (Orientation{true, 2}));
    EXPECT_EQ(orientationOf({0.98, 0.17, -0.17, 0.98, 3, 4}), Orientation()); // 10 degrees
}

TEST(Orientation, TransformPutsTheUprightPictureAtTheOrigin) {
    for (const Orientation orientation : allOrientations()) {
        const AffineTransform transform = transformOf(orientation, {640, 480});
        EXPECT_EQ(orientationOf(transform), orientation);
        EXPECT_EQ(transform.isIdentity(), orientation.isUpright());
        const Point one = transform.apply({0, 0});
        const Point other = transform.apply({640, 480});
        EXPECT_EQ(std::min(one.x, other.x), 0);
        EXPECT_EQ(std::min(one.y, other.y), 0);
        EXPECT_EQ(transform.boundingSize({640, 480}),
                  orientation.swapsSides() ? (Size{480, 640}) : (Size{640, 480}));
    }
}

TEST(Orientation, WalkReadsEachSampleWhereTheTransformPutsIt) {
    constexpr int width = 5;
    constexpr int height = 3;
    constexpr int stride = 32;
    constexpr int sampleBytes = 2;
    for (const Orientation orientation : allOrientations()) {
        const PixelWalk walk(orientation, width, height, stride, sampleBytes);
        const AffineTransform transform = transformOf(orientation, {width, height});
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const Point centre = transform.apply({x + 0.5, y + 0.5});
                EXPECT_EQ(walk.origin + static_cast<int>(centre.x) * walk.alongRow +
                              static_cast<int>(centre.y) * walk.alongColumn,
                          y * stride + x * sampleBytes);
            }
        }
    }
}

TEST(Orientation, TurnsTheChromaLocation) {
    using media::turnedChromaLocation;
    constexpr int left = 1, centre = 2, topLeft = 3, top = 4, bottomLeft = 5, bottom = 6;
    EXPECT_EQ(turnedChromaLocation(0, {}), 0);
    EXPECT_EQ(turnedChromaLocation(0, {false, 1}), top); // unstated means left
    EXPECT_EQ(turnedChromaLocation(left, {false, 3}), bottom);
    EXPECT_EQ(turnedChromaLocation(topLeft, {true, 2}), bottomLeft);
    EXPECT_EQ(turnedChromaLocation(left, {false, 2}), centre); // right has no code
    EXPECT_EQ(turnedChromaLocation(centre, {true, 3}), centre);
}

TEST(VideoFormat, ScalesTheWidthToSquarePixels) {
    EXPECT_EQ(naturalSize({720, 576, {16, 15}, {}}), (Size{768, 576}));
    EXPECT_EQ(naturalSize({1440, 1080, {4, 3}, {}}), (Size{1920, 1080}));
    EXPECT_EQ(plausibleAspect(0, 1), PixelAspect());
    EXPECT_EQ(plausibleAspect(2000000000, 1), PixelAspect());
    EXPECT_EQ(plausibleAspect(40, 33), (PixelAspect{40, 33}));
}

TEST(VideoFormat, GuessesTheMatrixBySizeOnlyIfNoneIsStated) {
    EXPECT_EQ(matrixOrGuess(2, 720, 576), 6);
    EXPECT_EQ(matrixOrGuess(2, 1280, 544), 1);
    EXPECT_EQ(matrixOrGuess(2, 608, 1080), 1);
    EXPECT_EQ(matrixOrGuess(6, 1920, 1080), 6);
    EXPECT_EQ(matrixOrGuess(9, 640, 360), 9);
    EXPECT_EQ(matrixOrGuess(77, 640, 360), 6);
}

} // namespace
} // namespace zelvra
