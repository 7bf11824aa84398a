// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/ExportCheck.h"
#include "tests/exports/UnusualMovies.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Case {
    const char* name;
    ExportJob job;
    double maxSoundOffset = 0; ///< seconds between sound and picture
    bool withoutRoom = false;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) {
    return stream << c.name;
}

/// Movies whose sound continues for two seconds after the last picture, with freezes in that tail.
class SoundTail : public testing::TestWithParam<Case> {};

TEST_P(SoundTail, FreezesAtItsOwnTimeAndThenShowsTheLastPictureAgain) {
    const TemporaryFolder folder;
    ExportJob job = GetParam().job;
    if (GetParam().withoutRoom) {
        job.file = withoutRoomBetweenPictures(job.movie, folder.path());
    }
    const ExportedMovie movie(job, folder.path());
    EXPECT_TRUE(movie.notices().empty()) << movie.notices().front();
    if (GetParam().withoutRoom) {
        movie.expectRightOnScreen(movie.file());
    } else {
        movie.expectRightPictures(movie.file());
        movie.expectRightSeeks(movie.file(), 12);
    }
    movie.expectRightSound(GetParam().maxSoundOffset);
}

constexpr double halfAacPacket = 512.0 / 48000;

NumberedMovie withTail(NumberedMovie movie) {
    movie.frames = 60;
    movie.soundSeconds = 4;
    return movie;
}

const NumberedMovie h264 = withTail({.sound = SoundCodec::aac, .container = "mp4"});
const NumberedMovie hevc = withTail({.codec = MovieCodec::hevc, .sound = SoundCodec::pcm});
const NumberedMovie mpeg4 = withTail({.codec = MovieCodec::mpeg4, .sound = SoundCodec::pcm});
const NumberedMovie main = withTail({.bFrames = 0, .profile = "main", .sound = SoundCodec::aac});
const std::vector<ExportJob::Freeze> several{{31}, {75}, {75, 0.7}, {90}, {120}};

INSTANTIATE_TEST_SUITE_P(
    All, SoundTail,
    testing::Values(
        Case{"Stills", {.movie = h264, .freezes = several}, halfAacPacket},
        Case{"StillsOfARange", {.movie = h264, .freezes = {{61}, {80}}, .range = {{40, 100}}}, halfAacPacket},
        Case{"StillsOfARangeInTheTail",
             {.movie = h264, .freezes = {{80}}, .range = {{70, 100}}},
             halfAacPacket},
        Case{"HevcSplice", {.movie = hevc, .freezes = several, .extension = ".mov"}},
        Case{"H264Splice", {.movie = main, .freezes = {{75, 1}, {90}}}, halfAacPacket, true},
        Case{"Reencoded", {.movie = mpeg4, .freezes = several}},
        Case{"ReencodedRangeInTheTail", {.movie = mpeg4, .freezes = {{80}}, .range = {{70, 100}}}}),
    [](const testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

} // namespace
} // namespace zelvra::test
