// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FreezeClipEncoder.h"
#include "ZelvraCore/OverlayRasteriser.h"
#include "ZelvraCore/media/still/StillPicture.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/ZelvraCore/media/still/TestPictures.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

namespace zelvra::test {
namespace {

using namespace media;

constexpr CMTime thirtieth{1, 30};
constexpr Color red{1, 0, 0, 1};

struct Format {
    VideoCodec codec;
    ChromaFormat chroma;
    int bitDepth;
    int width = 160;
    int height = 96;
};

struct PlaneError {
    double psnr = 0;
    double mean = 0; ///< code values of 8 bits
};

/// Of a decoded frame against the picture that went in, outside the figure that `box` draws.
PlaneError errorOf(const std::vector<std::uint8_t>& frame, const DecodedPicture& picture, int plane) {
    const DecodedPicture::Plane& wanted = picture.planes.at(static_cast<std::size_t>(plane));
    double squares = 0;
    double sum = 0;
    double samples = 0;
    for (int y = 0; y < wanted.height; ++y) {
        for (int x = 0; x < wanted.width; ++x) {
            const double across = (x + .5) / wanted.width;
            const double down = (y + .5) / wanted.height;
            if (std::max(std::abs(across - .5), std::abs(down - .5)) < .35) {
                continue;
            }
            const double error =
                (sampleIn(frame, picture, plane, x, y) - sampleAt(wanted, picture.bitDepth, x, y)) /
                static_cast<double>(1 << (picture.bitDepth - 8));
            squares += error * error;
            sum += error;
            samples += 1;
        }
    }
    return {10 * std::log10(255 * 255 * samples / squares), std::abs(sum / samples)};
}

class FreezeClip : public testing::TestWithParam<Format> {};

TEST_P(FreezeClip, StandsStillInTheSourcesOwnFormat) {
    const Format& format = GetParam();
    const DecodedPicture picture =
        texturedPicture(format.width, format.height, format.chroma, format.bitDepth);
    const TemporaryFolder folder;
    encodeFreezeClip(drawShape(imageOf(picture), box(red)), folder / "clip.mov", thirtieth, {12, 30},
                     format.codec);

    const DecodedClip clip = decodeClip(folder / "clip.mov");
    EXPECT_EQ(clip.pixelFormat, pixelFormatName(picture));
    ASSERT_EQ(clip.frames.size(), 12u);
    EXPECT_THAT(clip.frames, testing::Each(clip.frames.front()));
    const bool monochrome = format.chroma == ChromaFormat::monochrome;
    for (int plane = 0; plane < (monochrome ? 1 : 3); ++plane) {
        const PlaneError error = errorOf(clip.frames.front(), picture, plane);
        EXPECT_LT(error.mean, 0.5) << "plane " << plane;
        EXPECT_TRUE(plane > 0 || error.psnr >= 42) << error.psnr;
        EXPECT_TRUE(plane > 0 || error.psnr < 44) << "more than is needed: " << error.psnr;
    }
}

using enum ChromaFormat;
using enum VideoCodec;
INSTANTIATE_TEST_SUITE_P(Formats, FreezeClip,
                         testing::Values(Format{h264, yuv420, 8}, Format{h264, yuv422, 8},
                                         Format{h264, yuv444, 8}, Format{h264, monochrome, 8},
                                         Format{h264, yuv420, 10}, Format{h264, yuv422, 10},
                                         Format{h264, yuv444, 10}, Format{hevc, yuv420, 8},
                                         Format{hevc, yuv422, 8}, Format{hevc, yuv444, 8},
                                         Format{hevc, yuv420, 10}, Format{hevc, yuv422, 10},
                                         Format{hevc, yuv444, 10}, Format{hevc, yuv420, 12},
                                         Format{h264, yuv420, 8, 96, 160}, Format{hevc, yuv420, 8, 40, 24}));

TEST(FreezeClipFile, HasFramesAtExactTimes) {
    const TemporaryFolder folder;
    const Image image = imageOf(texturedPicture(64, 48));
    for (const VideoCodec codec : {h264, hevc}) {
        encodeFreezeClip(image, folder / "clip.mov", {1001, 30000}, {3, 1}, codec);
        const nlohmann::json all =
            probe(folder / "clip.mov", {"-show_streams", "-show_packets", "-show_format"});
        const nlohmann::json& stream = all.at("streams").at(0);
        EXPECT_EQ(all.at("streams").size(), 1u);
        EXPECT_EQ(stream.at("codec_tag_string"), codec == h264 ? "avc1" : "hvc1");
        EXPECT_EQ(stream.at("time_base"), "1/30000");
        EXPECT_EQ(stream.at("duration_ts"), 90 * 1001);
        EXPECT_EQ(all.at("format").at("duration"), "3.003000");
        const nlohmann::json& packets = all.at("packets");
        ASSERT_EQ(packets.size(), 90u);
        for (int i = 0; i < 90; ++i) {
            const nlohmann::json& packet = packets.at(static_cast<std::size_t>(i));
            EXPECT_EQ(packet.at("pts"), i * 1001);
            EXPECT_EQ(packet.at("dts"), i * 1001);
            EXPECT_EQ(packet.at("duration"), 1001);
            EXPECT_EQ(packet.at("flags").get<std::string>().starts_with('K'), i == 0);
            EXPECT_TRUE(i == 0 || std::stoi(packet.at("size").get<std::string>()) < 60) << packet;
        }
    }
}

TEST(FreezeClipFile, HasAtLeastOneFrameAndAsManyAsTheQuotientRounds) {
    const TemporaryFolder folder;
    const Image image = imageOf(texturedPicture(64, 48));
    const auto frames = [&](CMTime frame, CMTime total) {
        encodeFreezeClip(image, folder / "clip.mov", frame, total, h264);
        return decodeClip(folder / "clip.mov").frames.size();
    };
    EXPECT_EQ(frames({1, 30}, {1, 100}), 1u);
    EXPECT_EQ(frames({1, 25}, {3, 1}), 75u);
    EXPECT_EQ(frames({1001, 30000}, {2, 1}), 60u);
    // Beyond the cycles of frame_num and of the picture order count.
    const std::size_t many = 700;
    EXPECT_EQ(frames({1, 240}, {700, 240}), many);
    EXPECT_TRUE(showMovie(folder / "clip.mov").faults.empty());
}

TEST(FreezeClipFile, CarriesColourTagsAndPixelAspect) {
    const TemporaryFolder folder;
    DecodedPicture picture = texturedPicture(72, 64, yuv420, 10);
    picture.color = {9, 18, 9, false, 3};
    picture.pixelAspect = {4, 3};
    for (const VideoCodec codec : {h264, hevc}) {
        encodeFreezeClip(imageOf(picture), folder / "clip.mov", thirtieth, {1, 10}, codec);
        const nlohmann::json stream = probe(folder / "clip.mov", {"-show_streams"}).at("streams").at(0);
        EXPECT_EQ(stream.at("width"), 72);
        EXPECT_EQ(stream.at("sample_aspect_ratio"), "4:3");
        EXPECT_EQ(stream.at("color_space"), "bt2020nc");
        EXPECT_EQ(stream.at("color_transfer"), "arib-std-b67");
        EXPECT_EQ(stream.at("color_primaries"), "bt2020");
        EXPECT_EQ(stream.at("color_range"), "tv");
        EXPECT_EQ(stream.at("chroma_location"), "topleft");
    }
}

struct DrawnColor {
    const char* what;
    int matrix;
    bool fullRange;
    int bitDepth;
    std::array<int, 3> red; ///< Y, Cb, Cr, worked out by hand from ITU-T H.273
};

class DrawnFigure : public testing::TestWithParam<DrawnColor> {};

TEST_P(DrawnFigure, HasItsColourInTheSourcesMatrixAndRange) {
    DecodedPicture picture = texturedPicture(128, 128, yuv420, GetParam().bitDepth);
    picture.color = {GetParam().matrix, GetParam().matrix, GetParam().matrix, GetParam().fullRange, 1};
    const StillPicture still = stillPicture(drawShape(imageOf(picture), box(red)));
    for (int plane = 0; plane < 3; ++plane) {
        const int scale = plane == 0 ? 1 : 2;
        EXPECT_NEAR(sampleAt(still.picture->planes.at(static_cast<std::size_t>(plane)), GetParam().bitDepth,
                             38 / scale, 64 / scale),
                    GetParam().red.at(static_cast<std::size_t>(plane)), 1)
            << GetParam().what << ", plane " << plane;
    }
}

INSTANTIATE_TEST_SUITE_P(Colours, DrawnFigure,
                         testing::Values(DrawnColor{"BT.709", 1, false, 8, {63, 102, 240}},
                                         DrawnColor{"BT.601", 6, false, 8, {81, 90, 240}},
                                         DrawnColor{"BT.601, full range", 6, true, 8, {76, 85, 255}},
                                         DrawnColor{"BT.2020, 10 bits", 9, false, 10, {294, 387, 960}}));

TEST(FreezeClipFile, ShowsAnImageThatNoDecoderMade) {
    const TemporaryFolder folder;
    Image::Raster raster{97, 55, std::vector<std::uint8_t>(97 * 55 * 4, 0)};
    for (std::size_t i = 0; i < raster.rgba.size(); i += 4) {
        raster.rgba[i] = 255;
        raster.rgba[i + 3] = 255;
    }
    const Image image(std::make_shared<Image::Raster>(std::move(raster)), {1, 1, 1, false, 0});
    encodeFreezeClip(image, folder / "clip.mov", thirtieth, {1, 10}, h264);
    const DecodedClip clip = decodeClip(folder / "clip.mov");
    const nlohmann::json stream = probe(folder / "clip.mov", {"-show_streams"}).at("streams").at(0);
    EXPECT_EQ(stream.at("width"), 98); // 4:2:0 has no odd sizes
    EXPECT_EQ(stream.at("height"), 56);
    EXPECT_NEAR(clip.frames.at(0).at(0), 63, 1);
    EXPECT_NEAR(clip.frames.at(0).back(), 240, 1);
}

TEST(FreezeClipFile, ReplacesAnExistingFileAndLeavesNoneOnFailure) {
    const TemporaryFolder folder;
    const Image image = imageOf(texturedPicture(64, 48));
    std::ofstream(folder / "clip.mov") << "left over";
    encodeFreezeClip(image, folder / "clip.mov", thirtieth, {1, 10}, h264);
    EXPECT_EQ(decodeClip(folder / "clip.mov").frames.size(), 3u);

    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_THROW(
        encodeFreezeClip(image, folder / "other.mov", thirtieth, {1, 1}, h264, {}, stopped.get_token()),
        MediaError);
    EXPECT_THROW(encodeFreezeClip(image, folder / "none" / "clip.mov", thirtieth, {1, 1}, h264), MediaError);
    std::filesystem::create_directory(folder / "folder.mov");
    EXPECT_THROW(encodeFreezeClip(image, folder / "folder.mov", thirtieth, {1, 1}, h264), MediaError);
    const Image tooSmall = imageOf(texturedPicture(6, 6));
    EXPECT_THROW(encodeFreezeClip(tooSmall, folder / "small.mov", thirtieth, {1, 1}, hevc), ZVError);
    EXPECT_THAT(folder.names(), testing::ElementsAre("clip.mov", "folder.mov"));
}

TEST(FreezeClipFile, RefusesTimesThatAreNoTimes) {
    const TemporaryFolder folder;
    const Image image = imageOf(texturedPicture(64, 48));
    const CMTime second{1, 1};
    const std::vector<std::pair<CMTime, CMTime>> bad{
        {CMTime(0, 30), second},          {CMTime::invalid(), second},
        {CMTime(-1, 30), second},         {CMTime::positiveInfinity(), second},
        {thirtieth, CMTime::invalid()},   {thirtieth, CMTime::positiveInfinity()},
        {thirtieth, CMTime(-1, 1)},       {CMTime(1, 1000000000), CMTime(1000, 1)},
        {thirtieth, CMTime::indefinite()}};
    for (const auto& [frame, total] : bad) {
        try {
            encodeFreezeClip(image, folder / "clip.mov", frame, total, h264);
            ADD_FAILURE() << "took " << frame.seconds() << " s and " << total.seconds() << " s";
        } catch (const ZVError& error) {
            EXPECT_EQ(error.kind(), ZVError::Case::writerFailed);
        }
    }
    EXPECT_TRUE(folder.names().empty());
}

} // namespace
} // namespace zelvra::test
