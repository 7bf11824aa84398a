// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/ZVError.h"
#include "tests/exports/ExportCheck.h"
#include "tests/exports/UnusualMovies.h"
#include "tests/support/Files.h"
#include "tests/support/Process.h"

#include <functional>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Case {
    const char* name;
    ExportJob job;
    std::function<std::filesystem::path(const NumberedMovie&, const std::filesystem::path&)> make;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) {
    return stream << c.name;
}

/// H.264 movies in which no still fits between two pictures. They must pass through too.
class H264Splice : public testing::TestWithParam<Case> {};

TEST_P(H264Splice, ShowsEveryPictureAtItsTime) {
    const TemporaryFolder folder;
    ExportJob job = GetParam().job;
    job.file = GetParam().make(job.movie, folder.path());
    const ExportedMovie movie(job, folder.path());
    EXPECT_TRUE(movie.notices().empty()) << movie.notices().front();
    movie.expectRightOnScreen(movie.file());
    movie.expectRightOnScreen(movie.file(), {"-threads", "1", "-err_detect", "explode", "-xerror"});
    if (HasFailure()) {
        return;
    }
    movie.expectSourcePicturesUntouched();
    movie.expectRightSeeks(movie.file(), 8, 0);
    if (!job.range) {
        runChecked({"ffmpeg", "-v", "error", "-i", movie.file().string(), "-map", "0", "-c", "copy",
                    (folder / "copy.mp4").string()});
        movie.expectRightOnScreen(folder / "copy.mp4");
    }
}

const NumberedMovie plain{.frames = 90, .bFrames = 0, .profile = "main", .sound = SoundCodec::aac};
const NumberedMovie baseline{.rate = 25, .frames = 90, .timescale = 25, .bFrames = 0, .profile = "baseline"};
const NumberedMovie mixed{.frames = 120};

auto changing(const std::string& params) {
    return [params](const NumberedMovie& movie, const std::filesystem::path& folder) {
        return withChangingCoding(movie, 60, params, folder);
    };
}

INSTANTIATE_TEST_SUITE_P(
    All, H264Splice,
    testing::Values(
        Case{"no_room", {.movie = plain, .freezes = {{0}, {35}, {60}, {90}}}, withoutRoomBetweenPictures},
        Case{"no_room_and_coarse_ticks",
             {.movie = baseline, .freezes = {{41}, {41}}, .extension = ".mov"},
             withoutRoomBetweenPictures},
        Case{"a_range_without_room",
             {.movie = plain, .freezes = {{50}}, .range = {{43, 80}}},
             withoutRoomBetweenPictures},
        Case{"other_parameter_sets",
             {.movie = mixed, .freezes = {{41}, {60}, {62}, {120}}},
             changing("sps-id=3:ref=1")},
        Case{"the_same_ids_for_other_parameter_sets",
             {.movie = mixed, .freezes = {{59}, {63}}, .extension = ".mov"},
             changing("ref=1:cabac=0")},
        Case{"a_range_over_a_change",
             {.movie = mixed, .freezes = {{61}}, .range = {{51, 87}}},
             changing("sps-id=3:ref=2")}),
    [](const testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

TEST(H264SpliceLimit, ReencodesMoviesThatWouldMostlyBeStoredTwice) {
    const TemporaryFolder folder;
    ExportJob job{.movie = {.frames = 60, .gop = 60, .bFrames = 0, .profile = "main"},
                  .freezes = {{40}, {50}}};
    job.file = withoutRoomBetweenPictures(job.movie, folder.path());
    const ExportedMovie movie(job, folder.path());
    EXPECT_EQ(movie.notices(),
              std::vector<std::string>{
                  "Re-encoding the video, because more of it would have to be stored twice than once."});
    movie.expectRightOnScreen(movie.file());
}

TEST(H264SpliceLimit, ReportsThatNothingCanBeDecoded) {
    const TemporaryFolder folder;
    const std::filesystem::path source =
        withPlanesApart({.frames = 30, .pixelFormat = "yuv444p"}, folder.path());
    std::vector<std::string> notices;
    RenderOptions options;
    options.notice = [&](const std::string& line) { notices.push_back(line); };
    options.sourceRange = CMTimeRange::fromStartToEnd(CMTime(1, 5), CMTime(4, 5));
    EXPECT_THROW(renderHighlights(source, {}, folder / "export.mov", options), ZVError);
    EXPECT_EQ(notices, std::vector<std::string>{"Re-encoding the video, because its coding stands in the "
                                                "way: the video's colour planes are coded apart."});
}

} // namespace
} // namespace zelvra::test
