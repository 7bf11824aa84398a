// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/pixels/PictureConversion.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace zelvra {
namespace {

using namespace media;

using Rgb = std::array<double, 3>;

/// Luma weights of red and blue, ITU-R BT.601, BT.709, BT.2020.
struct Weights {
    AVColorSpace matrix;
    double red;
    double blue;
};
constexpr std::array<Weights, 3> weights{{{AVCOL_SPC_SMPTE170M, 0.299, 0.114},
                                          {AVCOL_SPC_BT709, 0.2126, 0.0722},
                                          {AVCOL_SPC_BT2020_NCL, 0.2627, 0.0593}}};

/// One colour as code values by the definition of the matrix.
std::array<int, 3> encoded(const Rgb& color, const Weights& weight, bool fullRange, int depth) {
    const double luma =
        weight.red * color[0] + (1 - weight.red - weight.blue) * color[1] + weight.blue * color[2];
    const double cb = (color[2] - luma) / (2 * (1 - weight.blue));
    const double cr = (color[0] - luma) / (2 * (1 - weight.red));
    const double unit = std::pow(2, depth - 8);
    const double most = std::pow(2, depth) - 1;
    const auto code = [](double value) { return static_cast<int>(std::lround(value)); };
    if (fullRange) {
        return {code(luma * most), code(cb * most + 128 * unit), code(cr * most + 128 * unit)};
    }
    return {code((219 * luma + 16) * unit), code((224 * cb + 128) * unit), code((224 * cr + 128) * unit)};
}

Frame flatFrame(AVPixelFormat format, std::array<int, 3> codes, int depth, int width = 18, int height = 10) {
    Frame frame = makeFrame();
    frame->format = format;
    frame->width = width;
    frame->height = height;
    EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    for (int plane = 0; plane < 3 && frame->data[plane] != nullptr; ++plane) {
        const int rows =
            plane > 0 && av_pix_fmt_desc_get(format)->log2_chroma_h > 0 ? (height + 1) / 2 : height;
        const auto bytes = static_cast<std::size_t>(frame->linesize[plane]) * static_cast<std::size_t>(rows);
        const auto code = static_cast<std::uint16_t>(codes[static_cast<std::size_t>(plane)]);
        if (depth > 8) {
            std::fill_n(reinterpret_cast<std::uint16_t*>(frame->data[plane]), bytes / 2, code);
        } else {
            std::fill_n(frame->data[plane], bytes, static_cast<std::uint8_t>(code));
        }
    }
    return frame;
}

void expectColor(const Image::Raster& raster, const Rgb& color, double tolerance) {
    for (std::size_t pixel = 0; pixel < raster.rgba.size(); pixel += 4) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            ASSERT_NEAR(raster.rgba[pixel + channel], color[channel] * 255, tolerance)
                << pixel << ' ' << channel;
        }
        ASSERT_EQ(raster.rgba[pixel + 3], 255);
    }
}

TEST(Color, FollowsTheTaggedMatrixAndRange) {
    constexpr std::array<Rgb, 4> colors{{{0.9, 0.2, 0.1}, {0.1, 0.8, 0.3}, {0.05, 0.1, 0.7}, {1, 1, 1}}};
    struct Layout {
        AVPixelFormat format;
        int depth;
        double tolerance; ///< what the rounding of code values alone makes of a colour
    };
    for (const auto& [format, depth, tolerance] :
         {Layout{AV_PIX_FMT_YUV420P, 8, 2.5}, Layout{AV_PIX_FMT_YUV420P10, 10, 1.1},
          Layout{AV_PIX_FMT_YUV444P12, 12, 0.7}}) {
        for (const Weights& weight : weights) {
            for (const bool fullRange : {false, true}) {
                for (const Rgb& color : colors) {
                    const Frame frame = flatFrame(format, encoded(color, weight, fullRange, depth), depth);
                    frame->colorspace = weight.matrix;
                    frame->color_range = fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
                    expectColor(uprightRaster(*frame, frame->width, frame->height, {}), color, tolerance);
                }
            }
        }
    }
}

TEST(Color, ReadsGreyPackedAndOddSizedFormats) {
    const Frame grey = flatFrame(AV_PIX_FMT_GRAY8, {16 + 110, 0, 0}, 8);
    expectColor(uprightRaster(*grey, 18, 10, {}), {110 / 219.0, 110 / 219.0, 110 / 219.0}, 0.6);

    const Frame packed = flatFrame(AV_PIX_FMT_RGB24, {77, 0, 0}, 8);
    expectColor(uprightRaster(*packed, 18, 10, {}), {77 / 255.0, 77 / 255.0, 77 / 255.0}, 1);

    const Frame odd = flatFrame(AV_PIX_FMT_YUV420P, encoded({0.9, 0.2, 0.1}, weights[0], false, 8), 8, 17, 9);
    const Image::Raster raster = uprightRaster(*odd, 17, 9, {false, 1});
    EXPECT_EQ(raster.width, 9);
    EXPECT_EQ(raster.height, 17);
    expectColor(raster, {0.9, 0.2, 0.1}, 2.5);
}

/// Horizontal ramp of Cb in 4:2:0: the chroma location moves it by half a pixel.
TEST(Color, HonoursTheChromaLocation) {
    const auto blueAt = [](AVChromaLocation location) {
        const Frame frame = flatFrame(AV_PIX_FMT_YUV420P, {126, 128, 128}, 8, 64, 16);
        frame->chroma_location = location;
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 32; ++x) {
                frame->data[1][y * frame->linesize[1] + x] = static_cast<std::uint8_t>(96 + 2 * x);
            }
        }
        return uprightRaster(*frame, 64, 16, {}).rgba[(8 * 64 + 32) * 4 + 2];
    };
    // Cb rises by one a pixel, by which blue rises by 2.018.
    EXPECT_NEAR(blueAt(AVCHROMA_LOC_LEFT) - blueAt(AVCHROMA_LOC_CENTER), 0.5 * 2.018, 1);
    EXPECT_GT(blueAt(AVCHROMA_LOC_LEFT), blueAt(AVCHROMA_LOC_CENTER));
    EXPECT_NEAR(blueAt(AVCHROMA_LOC_LEFT), (110 / 219.0) * 255, 1.1);
}

TEST(DecodedPlanes, AreTurnedWithoutChangeIfTheirFormatAllows) {
    const Frame frame = flatFrame(AV_PIX_FMT_YUV420P10, {600, 400, 500}, 10, 32, 16);
    reinterpret_cast<std::uint16_t*>(frame->data[0])[31] = 1000; // upper right
    const auto picture = uprightPlanes(*frame, {4, 3}, {false, 1});
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 16);
    EXPECT_EQ(picture->planes[1].height, 16);
    EXPECT_EQ(picture->bitDepth, 10);
    EXPECT_EQ(picture->pixelAspect, (PixelAspect{3, 4}));
    const auto& luma = picture->planes[0];
    EXPECT_EQ(reinterpret_cast<const std::uint16_t*>(luma.bytes.data())[luma.bytes.size() / 2 - 1], 1000);
    EXPECT_EQ(reinterpret_cast<const std::uint16_t*>(luma.bytes.data())[0], 600);

    const Frame wide = flatFrame(AV_PIX_FMT_YUV422P, {16, 128, 128}, 8);
    EXPECT_TRUE(uprightPlanes(*wide, {}, {false, 2}));
    EXPECT_FALSE(uprightPlanes(*wide, {}, {false, 1}));
    const Frame odd = flatFrame(AV_PIX_FMT_YUV420P, {16, 128, 128}, 8, 17, 10);
    EXPECT_TRUE(uprightPlanes(*odd, {}, {}));
    EXPECT_FALSE(uprightPlanes(*odd, {}, {true, 0}));
    EXPECT_FALSE(uprightPlanes(*flatFrame(AV_PIX_FMT_RGB24, {}, 8), {}, {}));
}

} // namespace
} // namespace zelvra
