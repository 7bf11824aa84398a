// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FrameGrab.h"

#include "ZelvraCore/Render.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/MovieSurgery.h"
#include "tests/support/NamedMovie.h"
#include "tests/support/Process.h"
#include "tests/support/ReadImage.h"

#include <algorithm>
#include <future>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

/// The index has the player's times, and grabs from start, middle and end give the player's pictures.
void expectPlayersPictures(const std::filesystem::path& file) {
    const ShownMovie shown = showMovie(file);
    const Asset asset(file);
    const FrameIndex& frames = asset.frames();
    ASSERT_EQ(frames.count(), shown.frames.size());
    ASSERT_FALSE(frames.empty());
    for (std::size_t i = 0; i < frames.count(); ++i) {
        ASSERT_EQ(frames.frame(i).time, shown.frames[i].time) << i;
    }
    std::vector<std::size_t> picked{frames.count() - 1};
    for (std::size_t i = 0; i < frames.count(); i += 7) {
        picked.push_back(i);
    }
    for (const std::size_t i : picked) {
        const Image image = extractFrame(asset, middleOf(frames.frame(i)));
        EXPECT_EQ(numberIn(image), shown.frames[i].number) << i;
        if (const DecodedPicture* decoded = image.decoded(); decoded != nullptr && decoded->bitDepth == 8) {
            EXPECT_EQ(readPicture(decoded->planes[0].bytes.data(), decoded->width, decoded->height,
                                  decoded->planes[0].stride)
                          .number,
                      shown.frames[i].number)
                << i;
        }
    }
}

class FrameGrab : public testing::TestWithParam<NamedMovie> {};

TEST_P(FrameGrab, ReturnsThePictureThatAPlayerShows) {
    expectPlayersPictures(movieFile(GetParam().movie));
}

CMTimeRange stretch(int from, int to) {
    return CMTimeRange::fromStartToEnd({from, 30}, {to, 30});
}
const CMTimeRange gap{CMTime::invalid(), {1, 2}};

INSTANTIATE_TEST_SUITE_P(
    Rates, FrameGrab,
    testing::Values(NamedMovie{"constant", {}}, NamedMovie{"29.97", {.rate = 30000, .ratePer = 1001}},
                    NamedMovie{"240", {.rate = 240, .frames = 96}},
                    NamedMovie{"25 without B", {.rate = 25, .bFrames = 0}},
                    NamedMovie{"variable",
                               {.frames = 12,
                                .frameTicks = {20, 20, 40, 1, 19, 300, 20, 21, 19, 20, 60, 20},
                                .timescale = 600}}));
INSTANTIATE_TEST_SUITE_P(
    Streams, FrameGrab,
    testing::Values(
        NamedMovie{"one group", {.frames = 120, .gop = 250}},
        NamedMovie{"open groups", {.gop = 12, .openGop = true}},
        NamedMovie{"intra refresh", {.gop = 20, .bFrames = 0, .encoderParams = "intra-refresh=1"}},
        NamedMovie{"interlaced", {.height = 192, .interlaced = true}},
        NamedMovie{"hevc", {.codec = MovieCodec::hevc}},
        NamedMovie{"hevc open 10 bit",
                   {.codec = MovieCodec::hevc,
                    .gop = 15,
                    .openGop = true,
                    .pixelFormat = "yuv420p10le",
                    .sampleEntry = "hev1"}},
        NamedMovie{"hevc layers", {.codec = MovieCodec::hevc, .encoderParams = "temporal-layers=2"}},
        NamedMovie{"mpeg4", {.codec = MovieCodec::mpeg4}},
        NamedMovie{"prores", {.frames = 20, .codec = MovieCodec::proRes, .pixelFormat = "yuv422p10le"}},
        NamedMovie{"h264 4:4:4", {.frames = 20, .pixelFormat = "yuv444p"}}));
INSTANTIATE_TEST_SUITE_P(
    Files, FrameGrab,
    testing::Values(
        NamedMovie{"fragmented", {.sound = SoundCodec::aac, .fragmented = true}},
        NamedMovie{"trimmed within a group",
                   {.frames = 90, .sound = SoundCodec::aac, .container = "mp4", .shown = {stretch(17, 70)}}},
        NamedMovie{"trimmed open group", {.frames = 90, .openGop = true, .shown = {stretch(34, 61)}}},
        NamedMovie{"two pieces", {.frames = 90, .shown = {stretch(5, 20), stretch(47, 80)}}},
        NamedMovie{"late picture", {.sound = SoundCodec::pcm, .shown = {gap, stretch(0, 60)}}},
        NamedMovie{"two sample entries", {.sound = SoundCodec::aac, .twoSampleEntries = true}},
        NamedMovie{"beyond 4 GiB", {.sound = SoundCodec::aac, .beyond4GiB = true}},
        NamedMovie{"quarter turn", {.orientation = Orientation::quarterTurn}},
        NamedMovie{"half turn", {.orientation = Orientation::halfTurn}},
        NamedMovie{"three quarter turn", {.orientation = Orientation::threeQuarterTurn}},
        NamedMovie{"mirrored", {.orientation = Orientation::mirrored}},
        NamedMovie{"long pixels", {.pixelAspect = "4/3", .orientation = Orientation::quarterTurn}}));

/// `ffmpeg -c copy` cuts as phones trim: whole groups are kept, an edit list hides what is too much.
TEST(FrameGrabOfCopies, ReturnsThePictureThatAPlayerShows) {
    const TemporaryFolder folder;
    for (const char* start : {"0.5", "1.23"}) {
        const auto copy = folder / (std::string(start) + ".mp4");
        runChecked({"ffmpeg", "-v", "error", "-ss", start, "-i",
                    movieFile({.frames = 90, .sound = SoundCodec::aac}).string(), "-c", "copy",
                    copy.string()});
        expectPlayersPictures(copy);
    }
}

TEST(FrameGrabOfOwnExports, PassesOverHiddenPictures) {
    const TemporaryFolder folder;
    const auto source = movieFile({.frames = 90, .codec = MovieCodec::hevc});
    const CMTime second{1, 1};
    const std::vector highlights{markerHighlight(3, {50, 30}, second, {320, 180}),
                                 markerHighlight(5, {75, 30}, second, {320, 180})};
    renderHighlights(source, highlights, folder / "export.mov");
    EXPECT_LT(Asset(folder / "export.mov").frames().count(),
              media::videoTrackOf(Asset(folder / "export.mov"))->samples.size());
    EXPECT_EQ(loadSourceInfo(folder / "export.mov").frameDuration, CMTime(1, 30));
    expectPlayersPictures(folder / "export.mov");
}

TEST(FrameGrab, TurnsPicturesByAllEightMatrices) {
    const TemporaryFolder folder;
    const Image upright = extractFrame(movieFile({}), CMTime::zero());
    for (int turns = 0; turns < 4; ++turns) {
        for (const bool mirrored : {false, true}) {
            const zelvra::Orientation orientation{mirrored, turns};
            BoxFile file = BoxFile::read(movieFile({}));
            setDisplayMatrix(file, transformOf(orientation, {320, 180}));
            file.write(folder / "turned.mov");
            const Image image = extractFrame(folder / "turned.mov", CMTime::zero());
            const PixelWalk walk(orientation, 320, 180, 1280, 4);
            ASSERT_EQ(image.width(), walk.width);
            ASSERT_EQ(image.height(), walk.height);
            for (int y = 0; y < walk.height; y += 7) {
                for (int x = 0; x < walk.width; x += 5) {
                    const auto from = walk.origin + x * walk.alongRow + y * walk.alongColumn;
                    const auto to = (y * walk.width + x) * 4;
                    ASSERT_TRUE(std::equal(&upright.raster().rgba[from], &upright.raster().rgba[from] + 4,
                                           &image.raster().rgba[to]))
                        << turns << mirrored << ' ' << x << ' ' << y;
                }
            }
        }
    }
}

TEST(FrameGrab, ShowsTheFirstPictureInAGapAndTheLastWhileSoundGoesOn) {
    const auto late = movieFile({.sound = SoundCodec::pcm, .shown = {gap, stretch(0, 60)}});
    EXPECT_EQ(numberIn(extractFrame(late, CMTime::zero())), 0);
    const auto outlasted = movieFile({.sound = SoundCodec::pcm, .soundSeconds = 3});
    EXPECT_EQ(numberIn(extractFrame(outlasted, {2999, 1000})), 59);
}

TEST(FrameGrab, RefusesTimesOutsideTheMovie) {
    const Asset asset(movieFile({}));
    for (const CMTime& time : {CMTime(-1, 600), asset.duration(), CMTime(1000, 1), CMTime::invalid(),
                               CMTime::positiveInfinity(), CMTime::indefinite()}) {
        try {
            extractFrame(asset, time);
            ADD_FAILURE() << time.seconds();
        } catch (const MediaError& error) {
            EXPECT_EQ(error.cause(), MediaError::Cause::outOfRange);
        }
    }
}

TEST(FrameGrab, StandsInForAPictureThatCannotBeDecoded) {
    const TemporaryFolder folder;
    const auto source = movieFile({.frames = 30, .gop = 10, .bFrames = 0});
    Bytes bytes = readBytes(source);
    const Asset asset(source);
    const auto& damaged = media::videoTrackOf(asset)->samples[15];
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(damaged.offset), damaged.size, 0);
    writeBytes(folder / "damaged.mov", bytes);
    EXPECT_EQ(numberIn(extractFrame(folder / "damaged.mov", {15, 30})), 14);
    EXPECT_EQ(numberIn(extractFrame(folder / "damaged.mov", {25, 30})), 25);

    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(media::videoTrackOf(asset)->samples.front().offset),
              bytes.begin() + static_cast<std::ptrdiff_t>(media::videoTrackOf(asset)->samples.back().offset),
              0);
    writeBytes(folder / "empty.mov", bytes);
    EXPECT_THROW(extractFrame(folder / "empty.mov", {5, 30}), MediaError);
}

TEST(FrameGrab, ServesSeveralThreadsFromOneAsset) {
    const Asset asset(movieFile({}));
    std::vector<std::future<std::optional<int>>> numbers;
    for (int frame = 0; frame < 60; frame += 6) {
        numbers.push_back(std::async(std::launch::async,
                                     [&asset, frame] { return numberIn(extractFrame(asset, {frame, 30})); }));
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        EXPECT_EQ(numbers[i].get(), static_cast<int>(i) * 6);
    }
}

} // namespace
} // namespace zelvra::test
