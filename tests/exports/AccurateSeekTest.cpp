// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/ExportCheck.h"
#include "tests/exports/GStreamerMovie.h"
#include "tests/exports/UnusualMovies.h"
#include "tests/support/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Case {
    const char* name;
    ExportJob job;
    bool roomForStills = true;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) {
    return stream << c.name;
}

/// GStreamer derives a picture's duration from the stream's constant rate, even if the next picture comes
/// sooner. Therefore, after spliced stills, it may find the copy of a still that precedes the hidden
/// pictures, up to a frame late.
std::vector<PictureReading> rightAt(const std::vector<ExpectedFrame>& frames, std::size_t place,
                                    bool roomForStills) {
    std::vector<PictureReading> right{{frames[place].number, frames[place].marker}};
    if (!roomForStills && place > 0 && frames[place - 1].marker) {
        right.push_back({frames[place - 1].number, frames[place - 1].marker});
    }
    return right;
}

class AccurateSeeks : public testing::TestWithParam<Case> {};

TEST_P(AccurateSeeks, FindThePictureOnScreenInTheMiddleOfEveryFrame) {
    const TemporaryFolder folder;
    ExportJob job = GetParam().job;
    if (!GetParam().roomForStills) {
        job.file = withoutRoomBetweenPictures(job.movie, folder.path());
    }
    const ExportedMovie exported(job, folder.path());
    GStreamerMovie movie(exported.file());
    const std::vector<ExpectedFrame>& frames = exported.expected();
    // Consecutive seeks go to frames far apart, so that none is a small step forward. 37 and the number of
    // frames have no common factor, so every frame is visited.
    ASSERT_NE(frames.size() % 37, 0U);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::size_t place = i * 37 % frames.size();
        const double middle =
            frames[place].time + 0.5 * GetParam().job.movie.ratePer / GetParam().job.movie.rate;
        const PictureReading found = movie.seek(middle);
        EXPECT_THAT(rightAt(frames, place, GetParam().roomForStills), testing::Contains(found))
            << "at " << middle << " s: picture " << found.number.value_or(-1) << " instead of "
            << frames[place].number;
    }
}

const NumberedMovie h264{.frames = 90, .sound = SoundCodec::aac, .container = "mp4"};
const NumberedMovie hevc{.frames = 90, .codec = MovieCodec::hevc, .sound = SoundCodec::aac};

INSTANTIATE_TEST_SUITE_P(
    All, AccurateSeeks,
    testing::Values(Case{"H264Stills", {.movie = h264, .freezes = {{0}, {31}, {32, 1.2}, {60}, {89}, {90}}}},
                    Case{"H264Range", {.movie = h264, .freezes = {{17}, {40, 1.2}}, .range = {{17, 71}}}},
                    Case{"H264Splice",
                         {.movie = {.frames = 90, .bFrames = 0, .profile = "main"},
                          .freezes = {{0}, {33, 1.2}, {62}, {89}}},
                         false},
                    Case{"H264SplicedRange",
                         {.movie = {.frames = 90, .bFrames = 0, .profile = "main"},
                          .freezes = {{44}},
                          .range = {{17, 71}}},
                         false},
                    Case{"HevcSplice", {.movie = hevc, .freezes = {{0}, {33, 1.2}, {62}, {89}}}},
                    Case{"HevcRange", {.movie = hevc, .freezes = {{44}}, .range = {{17, 71}}}}),
    [](const testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

} // namespace
} // namespace zelvra::test
