// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/SourceProbe.h"

#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/support/Files.h"
#include "tests/support/MovieSurgery.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

TEST(SourceProbe, ReportsTheFactsOfAPlainMovie) {
    const SourceInfo info = loadSourceInfo(
        movieFile({.rate = 30000, .ratePer = 1001, .sound = SoundCodec::aac, .soundSeconds = 1}));
    EXPECT_EQ(info.naturalSize, (Size{320, 180}));
    EXPECT_EQ(info.displaySize, (Size{320, 180}));
    EXPECT_TRUE(info.preferredTransform.isIdentity());
    EXPECT_EQ(info.duration, CMTime(60060, 30000));
    EXPECT_FLOAT_EQ(info.nominalFrameRate, 30000 / 1001.0F);
    EXPECT_EQ(info.frameDuration.value, 1001);
    EXPECT_EQ(info.frameDuration.timescale, 30000);
    EXPECT_TRUE(info.hasAudio);
    EXPECT_EQ(info.videoCodec, fourCharCode("avc1"));
}

TEST(SourceProbe, ReportsTheSampleEntryAsStored) {
    EXPECT_EQ(loadSourceInfo(movieFile({.codec = MovieCodec::hevc})).videoCodec, fourCharCode("hvc1"));
    EXPECT_EQ(loadSourceInfo(movieFile({.codec = MovieCodec::mpeg4})).videoCodec, fourCharCode("mp4v"));
    EXPECT_FALSE(loadSourceInfo(movieFile({.codec = MovieCodec::mpeg4})).hasAudio);
}

TEST(SourceProbe, TurnsAPortraitMovie) {
    const SourceInfo info =
        loadSourceInfo(movieFile({.width = 180, .height = 320, .orientation = Orientation::quarterTurn}));
    EXPECT_EQ(info.naturalSize, (Size{320, 180}));
    EXPECT_EQ(info.displaySize, (Size{180, 320}));
    EXPECT_EQ(info.preferredTransform, (AffineTransform{0, 1, -1, 0, 180, 0}));
}

TEST(SourceProbe, CountsPixelsAsSquare) {
    EXPECT_EQ(loadSourceInfo(movieFile({.pixelAspect = "4/3"})).naturalSize, (Size{427, 180}));
}

TEST(SourceProbe, EndsWithTheLongestTrack) {
    const auto outlasted = movieFile({.sound = SoundCodec::pcm, .soundSeconds = 3});
    EXPECT_EQ(loadSourceInfo(outlasted).duration, CMTime(3, 1));
    const CMTimeRange range{{10, 30}, {30, 30}};
    EXPECT_EQ(loadSourceInfo(movieFile({.shown = {range}})).duration, CMTime(1, 1));
}

TEST(SourceProbe, PassesOverAStrayShortFrame) {
    const SourceInfo info = loadSourceInfo(movieFile(
        {.frames = 12, .frameTicks = {20, 20, 40, 1, 39, 300, 20, 20, 20, 20, 60, 20}, .timescale = 600}));
    EXPECT_EQ(info.frameDuration, CMTime(20, 600));
}

TEST(SourceProbe, TakesTheFirstOfTwoVideoTracks) {
    const TemporaryFolder folder;
    const auto file = folder / "two.mov";
    runChecked({"ffmpeg", "-v", "error", "-i", movieFile({.codec = MovieCodec::mpeg4}).string(), "-i",
                movieFile({.width = 640, .height = 360}).string(), "-map", "0:v", "-map", "1:v", "-c", "copy",
                file.string()});
    EXPECT_EQ(loadSourceInfo(file).naturalSize, (Size{320, 180}));
}

TEST(SourceProbe, HasNoVideoTrackInASoundFile) {
    const TemporaryFolder folder;
    const auto file = folder / "sound.m4a";
    runChecked({"ffmpeg", "-v", "error", "-f", "lavfi", "-i", "sine=d=1", file.string()});
    try {
        loadSourceInfo(file);
        ADD_FAILURE();
    } catch (const ZVError& error) {
        EXPECT_EQ(error.kind(), ZVError::Case::noVideoTrack);
    }
}

TEST(SourceProbe, SaysInOneLineWhatItCannotOpen) {
    const TemporaryFolder folder;
    writeBytes(folder / "text.mov", Bytes(1000, 'a'));
    writeBytes(folder / "empty.mov", {});
    const auto movie = readBytes(movieFile({.indexFirst = true}));
    writeBytes(folder / "cut.mov", Bytes(movie.begin(), movie.begin() + 400));
    for (const char* name : {"missing.mov", "text.mov", "empty.mov", "cut.mov", "."}) {
        try {
            loadSourceInfo(folder / name);
            ADD_FAILURE() << name;
        } catch (const MediaError& error) {
            const std::string line = error.what();
            EXPECT_EQ(line.find('\n'), std::string::npos);
            EXPECT_NE(line.find(name), std::string::npos) << line;
        }
    }
}

} // namespace
} // namespace zelvra::test
