// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/ExportCheck.h"
#include "tests/support/Files.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Case {
    const char* name;
    ExportJob job;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) {
    return stream << c.name;
}

/// What services and editors do to an export that they receive: they encode it again at a constant rate.
class Transcode : public testing::TestWithParam<Case> {};

TEST_P(Transcode, ToAConstantRateShowsTheRightPictureInEveryFrame) {
    const TemporaryFolder folder;
    const ExportedMovie exported(GetParam().job, folder.path());
    const std::filesystem::path transcoded = folder / "transcoded.mp4";
    const NumberedMovie& source = GetParam().job.movie;
    runChecked({"ffmpeg", "-v", "error", "-i", exported.file().string(), "-r",
                std::to_string(source.rate) + "/" + std::to_string(source.ratePer), "-c:v", "libx264",
                "-preset", "veryfast", "-crf", "10", transcoded.string()});
    const std::vector<ExpectedFrame>& expected = exported.expected();
    const std::vector<ShownFrame> frames = showMovie(transcoded).frames;
    ASSERT_EQ(frames.size(), expected.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_TRUE(frames[i].number == expected[i].number && frames[i].marker == expected[i].marker)
            << frames[i] << ", expected " << expected[i].number << (expected[i].marker ? " frozen" : "");
    }
}

const NumberedMovie h264{.frames = 90, .sound = SoundCodec::aac, .container = "mp4"};
const NumberedMovie hevc{.frames = 90, .codec = MovieCodec::hevc, .sound = SoundCodec::aac};

INSTANTIATE_TEST_SUITE_P(
    All, Transcode,
    testing::Values(Case{"H264Stills", {.movie = h264, .freezes = {{0}, {31}, {32, 1.2}, {60}, {89}, {90}}}},
                    Case{"H264Range", {.movie = h264, .freezes = {{17}, {40, 1.2}}, .range = {{17, 71}}}},
                    Case{"HevcSplice", {.movie = hevc, .freezes = {{0}, {33, 1.2}, {62}, {89}}}},
                    Case{"HevcRange", {.movie = hevc, .freezes = {{44}}, .range = {{17, 71}}}}),
    [](const testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

} // namespace
} // namespace zelvra::test
