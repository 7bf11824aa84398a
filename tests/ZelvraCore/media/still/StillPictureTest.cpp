// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillPicture.h"
#include "ZelvraCore/OverlayRasteriser.h"
#include "ZelvraCore/media/pixels/PixelBuffer.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/ZelvraCore/media/still/TestPictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelvra::test {
namespace {

using namespace media;

TEST(StillPicture, IsTheDecodersOwnIfNothingWasDrawn) {
    const Image image = imageOf(texturedPicture(64, 48));
    EXPECT_EQ(stillPicture(image).picture.get(), image.decoded());
    EXPECT_TRUE(stillPicture(image).drawn.empty());
}

TEST(StillPicture, TakesTheRasterOnlyWhereItWasDrawnOn) {
    DecodedPicture picture = texturedPicture(90, 64);
    for (const PixelAspect aspect : {PixelAspect{1, 1}, PixelAspect{4, 3}, PixelAspect{2, 3}}) {
        picture.pixelAspect = aspect;
        const Image drawn = drawShape(imageOf(picture), box({0, 0, 1, 1}));
        const StillPicture still = stillPicture(drawn);
        int kept = 0;
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 90; ++x) {
                const bool outside = std::max(std::abs(x - 45) / 45., std::abs(y - 32) / 32.) > .4 + .22 + .1;
                const bool same =
                    sampleAt(still.picture->planes[0], 8, x, y) == sampleAt(picture.planes[0], 8, x, y);
                kept += outside && same;
                EXPECT_TRUE(!outside || same) << x << ' ' << y;
                EXPECT_EQ(!outside || still.drawn[static_cast<std::size_t>(y * 90 + x)] == 0, true);
            }
        }
        EXPECT_GT(kept, 500);
        EXPECT_EQ(sampleAt(still.picture->planes[0], 8, 27, 32), 32); // blue in BT.709
        EXPECT_EQ(sampleAt(still.picture->planes[1], 8, 13, 16), 240);
    }
}

TEST(Fitted, RepeatsTheEdgesIntoTheMargins) {
    const DecodedPicture picture = texturedPicture(30, 20);
    const DecodedPicture coded = fitted(picture, {{48, 32, 4, 2, 14, 10}, ChromaFormat::yuv420, 8});
    EXPECT_EQ(coded.planes[1].width, 24);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 48; ++x) {
            EXPECT_EQ(sampleAt(coded.planes[0], 8, x, y),
                      sampleAt(picture.planes[0], 8, std::clamp(x - 4, 0, 29), std::clamp(y - 2, 0, 19)));
        }
    }
    EXPECT_EQ(sampleAt(coded.planes[2], 8, 2, 1), sampleAt(picture.planes[2], 8, 0, 0));
    EXPECT_EQ(sampleAt(coded.planes[2], 8, 23, 15), sampleAt(picture.planes[2], 8, 14, 9));
}

TEST(Fitted, ConvertsDepthAndChroma) {
    const DecodedPicture picture = texturedPicture(32, 16, ChromaFormat::yuv420, 8);
    const DecodedPicture deep = fitted(picture, {{32, 16}, ChromaFormat::yuv444, 10});
    EXPECT_EQ(sampleAt(deep.planes[0], 10, 5, 6), 4 * sampleAt(picture.planes[0], 8, 5, 6));
    EXPECT_EQ(sampleAt(deep.planes[1], 10, 11, 6), 4 * sampleAt(picture.planes[1], 8, 5, 3));
    const DecodedPicture back = fitted(deep, {{32, 16}, ChromaFormat::yuv420, 8});
    EXPECT_EQ(sampleAt(back.planes[1], 8, 5, 3), sampleAt(picture.planes[1], 8, 5, 3));
    const DecodedPicture grey = texturedPicture(32, 16, ChromaFormat::monochrome);
    EXPECT_EQ(sampleAt(fitted(grey, {{32, 16}, ChromaFormat::yuv420, 8}).planes[2], 8, 3, 3), 128);
    EXPECT_TRUE(fitted(picture, {{32, 16}, ChromaFormat::monochrome, 8}).planes[1].bytes.empty());
}

TEST(PixelBuffer, HoldsBlueGreenRedInThisOrder) {
    Image::Raster raster{2, 1, {10, 20, 30, 255, 40, 50, 60, 255}};
    const Image image(std::make_shared<Image::Raster>(raster), {});
    const PixelBuffer same = makePixelBuffer(image, 2, 1);
    EXPECT_EQ(std::vector<int>(same.bytes(), same.bytes() + 3), (std::vector<int>{30, 20, 10}));
    const PixelBuffer larger = makePixelBuffer(image, 20, 10);
    EXPECT_NEAR(larger.bytes()[9 * larger.bytesPerRow() + 19 * 4 + 2], 40, 1);
}

TEST(PixelBuffer, SaysWhyItCannotBeMade) {
    const Image image = imageOf(texturedPicture(16, 8));
    const auto failure = [&](int width, int height) -> std::string {
        try {
            makePixelBuffer(image, width, height);
        } catch (const ZVError& error) {
            return error.description();
        }
        return "none";
    };
    EXPECT_EQ(failure(0, 8), "CGContext creation failed: CVPixelBuffer (status -22)");
    EXPECT_EQ(failure(1 << 30, 1 << 30), "CGContext creation failed: CVPixelBuffer (status -12)");
}

} // namespace
} // namespace zelvra::test
