// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/Render.h"
#include "ZelvraCore/SourceProbe.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

class RealMovie : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (const auto file = sharedMovie(GetParam())) {
            source = *file;
        } else {
            GTEST_SKIP() << "the collection of real movies is not here";
        }
    }

    std::filesystem::path source;
};

Highlight circleAt(CMTime time) {
    const HighlightShape circle{
        Uuid::random(), HighlightShapeKind::circle, {0.5, 0.5}, {0.5, 0.6}, {1, 0, 0, 1}, 0.01};
    return {Uuid::random(), time, CMTime(300, 600), circle};
}

/// Movies by cameras and editors of many makes pass through, whatever their peculiarities. All their pictures
/// come out bit for bit and in order, with the freezes between them. The movie gets longer by exactly the
/// freezes.
TEST_P(RealMovie, PassesThroughWithItsPicturesUntouched) {
    const SourceInfo info = loadSourceInfo(source);
    const std::vector<Highlight> highlights{
        circleAt(CMTime::fromSeconds(info.duration.seconds() * 0.3, 90000)),
        circleAt(CMTime::fromSeconds(info.duration.seconds() * 0.7, 90000))};
    const TemporaryFolder folder;
    RenderOptions options;
    options.notice = [](const std::string& line) {
        EXPECT_EQ(line.find("Re-encoding the video"), std::string::npos) << line;
    };
    const std::filesystem::path file =
        renderHighlights(source, highlights, folder / "export.mov", options).outputURL;

    const std::vector<HashedFrame> before = hashFrames(source);
    const std::vector<HashedFrame> after = hashFrames(file);
    std::size_t k = 0;
    std::size_t stills = 0;
    for (const HashedFrame& frame : after) {
        if (k < before.size() && frame.md5 == before[k].md5) {
            ++k;
        } else {
            ++stills;
        }
    }
    EXPECT_EQ(k, before.size()) << "a picture is missing, changed or out of order";
    EXPECT_GE(stills, 2U);
    const double frozen = 2 * 0.5;
    const double frame = info.frameDuration.seconds();
    EXPECT_NEAR(loadSourceInfo(file).duration.seconds(), info.duration.seconds() + frozen, 2 * frame + 0.05);
}

INSTANTIATE_TEST_SUITE_P(
    H264, RealMovie,
    testing::Values("sport-11-karma.mp4", "hdr-35-h264_10bits.mp4", "hdr-36-bt709_full_range.mp4",
                    "hdr-37-bt601.mp4", "time-39-cursed-vfr.mp4", "time-40-edit_list_positive_shift.mp4",
                    "time-42-iibbibb_editlist_videoonly.mp4", "time-44-av.mov",
                    "time-47-sample_without_stss.mp4", "track-50-sowt-with-video.mov",
                    "track-51-sample_twos_pcm.mp4", "track-53-video_without_audio_stream.mp4",
                    "track-54-video_with_rectangular_samples.mp4", "frag-64-sample_fragmented.mp4",
                    "frag-65-sample_partially_fragmented.mp4"));

} // namespace
} // namespace zelvra::test
