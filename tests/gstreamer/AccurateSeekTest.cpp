#include "tests/gstreamer/GStreamerMovie.h"
#include "tests/render/ExportCheck.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Case {
    const char* name;
    Export job;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) {
    return stream << c.name;
}

class AccurateSeeks : public testing::TestWithParam<Case> {};

TEST_P(AccurateSeeks, FindThePictureOnScreenInTheMiddleOfEveryFrame) {
    const TemporaryFolder folder;
    const ExportedMovie exported(GetParam().job, folder.path());
    GStreamerMovie movie(exported.file());
    const std::vector<ExpectedFrame>& frames = exported.expected();
    // Frames far apart follow one another, so that no seek is a small step on; 37 has no factor in common
    // with their number.
    ASSERT_NE(frames.size() % 37, 0U);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const ExpectedFrame& frame = frames[i * 37 % frames.size()];
        const double middle = frame.time + 0.5 * GetParam().job.movie.ratePer / GetParam().job.movie.rate;
        const PictureReading found = movie.seek(middle);
        EXPECT_EQ(found, (PictureReading{frame.number, frame.marker}))
            << "at " << middle << " s: picture " << found.number.value_or(-1) << " instead of "
            << frame.number;
    }
}

const NumberedMovie h264{.frames = 90, .sound = SoundCodec::aac, .container = "mp4"};
const NumberedMovie hevc{.frames = 90, .codec = MovieCodec::hevc, .sound = SoundCodec::aac};

INSTANTIATE_TEST_SUITE_P(
    All, AccurateSeeks,
    testing::Values(Case{"H264Stills", {.movie = h264, .freezes = {{0}, {31}, {32, 1.2}, {60}, {89}, {90}}}},
                    Case{"H264Range", {.movie = h264, .freezes = {{17}, {40, 1.2}}, .range = {{17, 71}}}},
                    Case{"HevcSplice", {.movie = hevc, .freezes = {{0}, {33, 1.2}, {62}, {89}}}},
                    Case{"HevcRange", {.movie = hevc, .freezes = {{44}}, .range = {{17, 71}}}}),
    [](const testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

} // namespace
} // namespace zelvra::test
