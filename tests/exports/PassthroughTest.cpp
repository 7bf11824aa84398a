// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/ExportCheck.h"
#include "tests/exports/UnusualMovies.h"
#include "tests/support/Files.h"
#include "tests/support/Process.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Case {
    const char* name;
    ExportJob job;
    /// The range starts at an intra picture that is not IDR. Decoders then warn that earlier references are
    /// missing, as after any seek to such a picture.
    bool startsAtOpenGroup = false;
};

std::ostream& operator<<(std::ostream& stream, const Case& c) {
    return stream << c.name;
}

std::string caseName(const testing::TestParamInfo<Case>& param) {
    std::string name = param.param.name;
    std::ranges::replace(name, ' ', '_');
    return name;
}

/// Exports that must pass through: exact with every decoder, and with the source's pictures bit for bit.
class Passthrough : public testing::TestWithParam<Case> {};

TEST_P(Passthrough, ShowsEveryPictureAtItsTime) {
    const TemporaryFolder folder;
    const ExportedMovie movie(GetParam().job, folder.path());
    EXPECT_TRUE(movie.notices().empty()) << movie.notices().front();
    movie.expectRightPictures(movie.file(), GetParam().startsAtOpenGroup ? "mmco: unref short failure" : "");
    if (HasFailure()) {
        return;
    }
    if (!GetParam().startsAtOpenGroup) {
        movie.expectRightPictures(movie.file(), "", {"-threads", "1", "-err_detect", "explode", "-xerror"});
    }
    movie.expectSourcePicturesUntouched();
    movie.expectRightSeeks(movie.file(), 6);
    if (GetParam().job.range && GetParam().job.movie.codec == MovieCodec::h264) {
        return; // a copy by ffmpeg loses the end of the edit and shows the references stored after it
    }
    for (const char* copy : {"copy.mp4", "copy.mkv"}) {
        runChecked({"ffmpeg", "-v", "error", "-i", movie.file().string(), "-map", "0", "-c", "copy",
                    (folder / copy).string()});
        movie.expectRightPictures(folder / copy);
    }
}

const NumberedMovie closed{.frames = 90};
const NumberedMovie open{.frames = 90, .openGop = true};

INSTANTIATE_TEST_SUITE_P(
    H264, Passthrough,
    testing::Values(
        Case{"freezes on all kinds of pictures",
             {.movie = closed,
              .freezes = {{0}, {1}, {2}, {3}, {4, 2}, {29}, {30}, {31}, {50, 0.01}, {51}, {89}, {90}}}},
        Case{"two freezes at one moment",
             {.movie = closed, .freezes = {{0}, {0}, {30}, {30}, {45}, {45}, {90}, {90}}}},
        Case{"open groups", {.movie = open, .freezes = {{0}, {28}, {29}, {30}, {31}, {58}, {60}, {90}}}},
        Case{"a range in the middle of groups",
             {.movie = closed, .freezes = {{17}, {40}, {71}}, .range = {{17, 71}}}},
        Case{"a range without freezes", {.movie = closed, .range = {{33, 52}}}},
        Case{"a range of open groups", {.movie = open, .freezes = {{31}, {60}}, .range = {{30, 80}}}, true},
        Case{"a range that freezes at once in an open group",
             {.movie = open, .freezes = {{30}, {30}}, .range = {{30, 62}}},
             true},
        Case{"a range from within open groups", {.movie = open, .freezes = {{59}}, .range = {{29, 62}}}}),
    caseName);

/// The variants that encoders produce, each with freezes on several kinds of pictures and a range.
NumberedMovie varied(NumberedMovie movie) {
    movie.frames = 70;
    return movie;
}

const std::vector<ExportJob::Freeze> four{{0}, {31}, {32}, {70}};

INSTANTIATE_TEST_SUITE_P(
    H264Variants, Passthrough,
    testing::Values(
        Case{"Baseline", {.movie = varied({.bFrames = 0, .profile = "baseline"}), .freezes = four}},
        Case{
            "a range of Baseline",
            {.movie = varied({.bFrames = 0, .profile = "baseline"}), .freezes = {{20}}, .range = {{13, 41}}}},
        Case{"CAVLC with B pictures", {.movie = varied({.encoderParams = "cabac=0"}), .freezes = four}},
        Case{"four slices", {.movie = varied({.encoderParams = "slices=4"}), .freezes = four}},
        Case{"adaptive fields", {.movie = varied({.interlaced = true}), .freezes = four}},
        Case{"scaling matrices", {.movie = varied({.encoderParams = "cqm=jvt"}), .freezes = four}},
        Case{"ten bits and all chroma lines",
             {.movie = varied({.pixelFormat = "yuv422p10le"}), .freezes = four}},
        Case{"all chroma", {.movie = varied({.pixelFormat = "yuv444p"}), .freezes = four}},
        Case{"NTSC rate",
             {.movie = varied({.rate = 30000, .ratePer = 1001, .openGop = true}),
              .freezes = four,
              .extension = ".mov"}},
        Case{"a timescale of the frame rate",
             {.movie = varied({.rate = 25, .timescale = 25}), .freezes = {{20}, {41}}, .range = {{13, 60}}}},
        Case{"240 frames a second", {.movie = varied({.rate = 240}), .freezes = four}},
        Case{"anamorphic and odd",
             {.movie = varied({.width = 322, .height = 182, .pixelAspect = "4/3"}), .freezes = four}},
        Case{"beyond 4 GiB", {.movie = varied({.beyond4GiB = true}), .freezes = {{31}}}},
        Case{"fragments", {.movie = varied({.container = "mp4", .fragmented = true}), .freezes = four}}),
    caseName);

const NumberedMovie hevcClosed{.frames = 90, .codec = MovieCodec::hevc};
const NumberedMovie hevcOpen{.frames = 90, .codec = MovieCodec::hevc, .openGop = true};

INSTANTIATE_TEST_SUITE_P(
    Hevc, Passthrough,
    testing::Values(
        Case{"freezes on all kinds of pictures", {.movie = hevcClosed, .freezes = {{0}, {32}, {63}, {90}}}},
        Case{"two freezes at one moment",
             {.movie = hevcClosed, .freezes = {{0}, {0}, {31}, {31}, {90}, {90}}}},
        Case{"open groups", {.movie = hevcOpen, .freezes = {{0}, {30}, {62}, {90}}, .extension = ".mov"}},
        Case{"freezes around the head of an open group", {.movie = hevcOpen, .freezes = {{59}, {61}}}},
        Case{"a range in the middle of groups",
             {.movie = hevcClosed, .freezes = {{17}, {33}, {71}}, .range = {{17, 71}}}},
        Case{"a range of open groups",
             {.movie = hevcOpen, .freezes = {{31}, {61}}, .range = {{29, 80}}, .extension = ".mov"}},
        Case{"ten bits",
             {.movie = {.frames = 60, .codec = MovieCodec::hevc, .pixelFormat = "yuv420p10le"},
              .freezes = {{31}}}}),
    caseName);

TEST(PassthroughEnd, KeepsALastPictureWithoutALength) {
    const TemporaryFolder folder;
    ExportJob job{.movie = {.bFrames = 0}, .freezes = {{20}}};
    job.file = withoutLengthOfLastPicture(job.movie, folder.path());
    const ExportedMovie movie(job, folder.path());
    EXPECT_TRUE(movie.notices().empty()) << movie.notices().front();
    movie.expectRightPictures(movie.file());
}

/// Half a packet of compressed sound; PCM is exact.
constexpr double halfAacPacket = 512.0 / 48000;

struct SoundCase {
    Case movie;
    double maxSoundOffset;
};

std::ostream& operator<<(std::ostream& stream, const SoundCase& c) {
    return stream << c.movie.name;
}

class PassthroughSound : public testing::TestWithParam<SoundCase> {};

TEST_P(PassthroughSound, StopsForFreezesAndResumesWhereItStopped) {
    const TemporaryFolder folder;
    const ExportedMovie movie(GetParam().movie.job, folder.path());
    movie.expectRightPictures(movie.file());
    movie.expectRightSound(GetParam().maxSoundOffset);
}

const NumberedMovie aac{.frames = 90, .sound = SoundCodec::aac, .container = "mp4"};
const NumberedMovie pcm{.frames = 90, .sound = SoundCodec::pcm};
const std::vector<ExportJob::Freeze> five{{0}, {20, 1.03}, {45, 0.77}, {46, 0.31}, {90}};

INSTANTIATE_TEST_SUITE_P(
    All, PassthroughSound,
    testing::Values(
        SoundCase{{"aac", {.movie = aac, .freezes = five}}, halfAacPacket},
        SoundCase{{"aac_range", {.movie = aac, .freezes = {{17}, {40}}, .range = {{17, 71}}}}, halfAacPacket},
        SoundCase{{"pcm", {.movie = pcm, .freezes = five, .extension = ".mov"}}, 0},
        SoundCase{{"pcm_range", {.movie = pcm, .freezes = {{40}}, .range = {{17, 71}}, .extension = ".mov"}},
                  0},
        SoundCase{{"pcm_as_aac", {.movie = pcm, .freezes = five}}, 0},
        SoundCase{{"aac_with_hevc",
                   {.movie = {.frames = 60, .codec = MovieCodec::hevc, .sound = SoundCodec::aac},
                    .freezes = {{31}},
                    .range = {{17, 50}}}},
                  halfAacPacket}),
    [](const testing::TestParamInfo<SoundCase>& param) { return std::string(param.param.movie.name); });

} // namespace
} // namespace zelvra::test
