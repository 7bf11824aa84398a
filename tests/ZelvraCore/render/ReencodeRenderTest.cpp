// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/ReencodeRender.h"
#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/FreezeClipEncoder.h"
#include "ZelvraCore/OverlayRasteriser.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/NumberedSound.h"
#include "tests/support/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <regex>

namespace zelvra::test {
namespace {

struct Case {
    const char* what;
    NumberedMovie movie;
    std::vector<int> freezes = {}; ///< source pictures, each frozen for 9 frames
    int first = 0;
    int end = 60;
    VideoCodec codec = VideoCodec::h264;
};

void PrintTo(const Case& test, std::ostream* stream) {
    *stream << test.what;
}

constexpr int freezeFrames = 9;

/// The clips and the job of an export into `folder`.
ReencodeJob prepare(const Case& test, const Asset& source, const TemporaryFolder& folder) {
    const SourceInfo info = loadSourceInfo(source);
    ReencodeJob job;
    std::vector<Highlight> marks;
    for (std::size_t i = 0; i < test.freezes.size(); ++i) {
        const CMTime moment = test.movie.timeOf(test.freezes[i]);
        const Highlight& mark = marks.emplace_back(markerHighlight(
            static_cast<int>(i), moment, info.frameDuration * freezeFrames, info.displaySize));
        const Image frame = extractFrame(source, minimum(moment, test.movie.timeOf(test.movie.frames - 1)));
        job.freezeClips.push_back(folder / ("clip" + std::to_string(i) + ".mov"));
        encodeFreezeClip(drawShape(frame, mark.shape), job.freezeClips.back(), info.frameDuration,
                         mark.duration, test.codec);
    }
    const auto range =
        CMTimeRange::fromStartToEnd(test.movie.timeOf(test.first), test.movie.timeOf(test.end));
    job.timeline = layoutTimeline(planRender(marks, range, true, info), info, source.frames());
    job.frameDuration = info.frameDuration;
    job.codec = test.codec;
    job.output = folder / "out.mp4";
    return job;
}

/// What the export must show, and when each piece of sound is heard.
struct Expected {
    std::vector<ShownFrame> frames;
    struct Sound {
        double at = 0;
        double seconds = 0;
        std::optional<double> source; ///< nothing: silence
    };
    std::vector<Sound> sound;
};

Expected expectedOf(const Case& test, const CMTime& frameDuration) {
    Expected expected;
    CMTime shift = -test.movie.timeOf(test.first);
    int next = test.first;
    const auto play = [&](int until) {
        const CMTime from = test.movie.timeOf(next);
        if (until > next) {
            expected.sound.push_back(
                {(from + shift).seconds(), (test.movie.timeOf(until) - from).seconds(), from.seconds()});
        }
        for (; next < until; ++next) {
            expected.frames.push_back({test.movie.timeOf(next) + shift, next, std::nullopt});
        }
    };
    for (std::size_t i = 0; i < test.freezes.size(); ++i) {
        play(test.freezes[i]);
        const CMTime start = test.movie.timeOf(next) + shift;
        for (int k = 0; k < freezeFrames; ++k) {
            expected.frames.push_back(
                {start + frameDuration * k, std::min(next, test.movie.frames - 1), static_cast<int>(i)});
        }
        expected.sound.push_back({start.seconds(), (frameDuration * freezeFrames).seconds(), std::nullopt});
        shift += frameDuration * freezeFrames;
    }
    play(test.end);
    return expected;
}

void expectSoundOf(const std::filesystem::path& file, const Expected& expected) {
    const MovieSound sound = readSound(file);
    const std::vector<float> reference = numberedSound(std::int64_t{3} * sound.rate, sound.rate);
    constexpr double edge = 0.03; // a coded packet's window reaches over a cut
    for (const Expected::Sound& piece : expected.sound) {
        if (piece.seconds < 3 * edge) {
            continue;
        }
        const auto heard = sound.between(piece.at + edge, piece.seconds - 2 * edge);
        if (!piece.source) {
            EXPECT_LT(peak(heard), 0.005) << "at " << piece.at;
            continue;
        }
        const auto from = static_cast<std::int64_t>(std::lround((*piece.source + edge) * sound.rate));
        const auto found = locateSound(heard, reference, from, 2000);
        ASSERT_TRUE(found) << "at " << piece.at;
        EXPECT_NEAR(static_cast<double>(found->sample), static_cast<double>(from), 2) << "at " << piece.at;
    }
    const Expected::Sound& last = expected.sound.back();
    // The last packet is longer than the sound; the rest of it is silence.
    const auto end = static_cast<std::int64_t>(std::lround((last.at + last.seconds) * sound.rate));
    EXPECT_NEAR(static_cast<double>(sound.samples.size()), static_cast<double>(end + 512), 514);
}

class Reencode : public testing::TestWithParam<Case> {};

TEST_P(Reencode, ShowsEveryPictureAtItsTimeAndFreezesInBetween) {
    const Case& test = GetParam();
    SCOPED_TRACE(test.what);
    const TemporaryFolder folder;
    const Asset source(movieFile(test.movie));
    const ReencodeJob job = prepare(test, source, folder);
    exportReencoded(source, job);

    const Expected expected = expectedOf(test, job.frameDuration);
    const ShownMovie shown = showMovie(job.output);
    EXPECT_TRUE(shown.faults.empty()) << shown.faults.front();
    EXPECT_THAT(shown.frames, testing::ElementsAreArray(expected.frames));
    const nlohmann::json streams = probe(job.output, {"-show_streams"}).at("streams");
    const nlohmann::json& video = streams.at(0);
    EXPECT_EQ(video.at("width"), test.movie.width + test.movie.width % 2);
    EXPECT_EQ(video.at("height"), test.movie.height + test.movie.height % 2);
    EXPECT_NEAR(std::stod(video.at("duration").get<std::string>()),
                expected.sound.back().at + expected.sound.back().seconds, 0.001);
    EXPECT_EQ(streams.size(), test.movie.sound == SoundCodec::none ? 1u : 2u);
    if (test.movie.sound != SoundCodec::none) {
        expectSoundOf(job.output, expected);
    }
}

using enum MovieCodec;
using enum Orientation;
INSTANTIATE_TEST_SUITE_P(
    Movies, Reencode,
    testing::Values(
        Case{"MPEG-4 with sound", {.codec = mpeg4, .sound = SoundCodec::aac}, {0, 17, 17, 60}},
        Case{"ProRes", {.codec = proRes, .pixelFormat = "yuv422p10le", .sound = SoundCodec::pcm}, {30}},
        Case{"on its side", {.sound = SoundCodec::aac, .orientation = quarterTurn}, {1, 31}},
        Case{"upside down", {.orientation = halfTurn}, {5}},
        Case{"on its other side, HEVC of 10 bits",
             {.codec = hevc, .pixelFormat = "yuv420p10le", .orientation = threeQuarterTurn},
             {5},
             0,
             60,
             VideoCodec::hevc},
        Case{"mirrored, 4:2:2 on 29.97",
             {.rate = 30000, .ratePer = 1001, .pixelFormat = "yuv422p", .orientation = mirrored},
             {9}},
        Case{"4:2:2 on its side", {.pixelFormat = "yuv422p", .orientation = quarterTurn}, {9}},
        Case{"a range within open groups",
             {.gop = 12, .openGop = true, .sound = SoundCodec::pcm, .orientation = quarterTurn},
             {7, 20, 41},
             7,
             41},
        Case{"an odd size", {.width = 321, .height = 181, .codec = mpeg4}, {3}},
        Case{"an odd size upside down",
             {.width = 321, .height = 181, .codec = mpeg4, .orientation = halfTurn},
             {3}},
        Case{"variable rate",
             {.frames = 12,
              .frameTicks = {20, 20, 20, 40, 60, 20, 20, 100, 20, 20, 20, 20},
              .timescale = 600,
              .codec = mpeg4,
              .sound = SoundCodec::aac},
             {4},
             0,
             12}));

double lumaSimilarity(const std::filesystem::path& file, const std::filesystem::path& source) {
    const std::string report = runChecked({"ffmpeg", "-hide_banner", "-i", file, "-i", source, "-lavfi",
                                           "[0:v][1:v]ssim", "-f", "null", "-"})
                                   .errors;
    std::smatch match;
    return std::regex_search(report, match, std::regex("SSIM Y:([0-9.]+)")) ? std::stod(match[1]) : 0;
}

TEST(ReencodeRender, KeepsTheLookOfTheSource) {
    const TemporaryFolder folder;
    std::vector<std::filesystem::path> movies{
        movieFile({.width = 640, .height = 360}),
        movieFile({.width = 640, .height = 360, .orientation = quarterTurn})};
    if (const auto noisy = sharedMovie("phone-16-ios9.mov")) {
        movies.push_back(*noisy);
    }
    for (const std::filesystem::path& movie : movies) {
        const Asset source(movie);
        const SourceInfo info = loadSourceInfo(source);
        ReencodeJob job;
        job.timeline = layoutTimeline(planRender({}, {}, true, info), info, source.frames());
        job.frameDuration = info.frameDuration;
        job.output = folder / "out.mp4";
        exportReencoded(source, job);
        EXPECT_GE(lumaSimilarity(job.output, movie), 0.99) << movie;
    }
}

TEST(ReencodeRender, CarriesColourTagsAndTurnsThePixelAspect) {
    const TemporaryFolder folder;
    const Case test{
        "",
        {.codec = hevc,
         .pixelFormat = "yuv420p10le",
         .colorTags = "colorspace=bt2020nc:color_trc=arib-std-b67:color_primaries=bt2020:range=tv",
         .pixelAspect = "4/3",
         .orientation = quarterTurn},
        {},
        0,
        60,
        VideoCodec::hevc};
    const Asset source(movieFile(test.movie));
    ReencodeJob job = prepare(test, source, folder);
    job.output = folder / "out.mov";
    job.container = MovieContainer::quickTime;
    exportReencoded(source, job);
    const nlohmann::json video = probe(job.output, {"-show_streams"}).at("streams").at(0);
    EXPECT_EQ(video.at("pix_fmt"), "yuv420p10le");
    EXPECT_EQ(video.at("codec_tag_string"), "hvc1");
    EXPECT_EQ(video.at("color_space"), "bt2020nc");
    EXPECT_EQ(video.at("color_transfer"), "arib-std-b67");
    EXPECT_EQ(video.at("width"), 320);
    EXPECT_EQ(video.at("sample_aspect_ratio"), "3:4");
    const SourceInfo after = loadSourceInfo(Asset(job.output));
    EXPECT_TRUE(after.preferredTransform.isIdentity());
}

TEST(ReencodeRender, KeepsWhenAndWhereItWasTaken) {
    const TemporaryFolder folder;
    const Case test{
        "",
        {.orientation = quarterTurn,
         .muxArguments = {"-movflags", "use_metadata_tags", "-metadata", "creation_time=2024-05-06T07:08:09Z",
                          "-metadata", "com.apple.quicktime.location.ISO6709=+52.5+013.4/"}}};
    const Asset source(movieFile(test.movie));
    ReencodeJob job = prepare(test, source, folder);
    for (const auto container : {MovieContainer::mpeg4, MovieContainer::quickTime}) {
        job.container = container;
        exportReencoded(source, job);
        const nlohmann::json tags = probe(job.output, {"-show_format"}).at("format").at("tags");
        EXPECT_EQ(media::movieOf(Asset(job.output)).creationTime, media::movieOf(source).creationTime);
        EXPECT_THAT(tags.at("creation_time"), testing::StartsWith("2024-05-06T07:08:09"));
        EXPECT_EQ(tags.at("com.apple.quicktime.location.ISO6709"), "+52.5+013.4/");
    }
}

TEST(ReencodeRender, PutsTheIndexFirstAndReportsItsProgress) {
    const TemporaryFolder folder;
    const Case test{"", {.codec = mpeg4}};
    const Asset source(movieFile(test.movie));
    ReencodeJob job = prepare(test, source, folder);
    std::vector<double> reports;
    job.progress = [&](double fraction) { reports.push_back(fraction); };
    exportReencoded(source, job);
    EXPECT_TRUE(std::ranges::is_sorted(reports));
    EXPECT_EQ(reports.back(), 1);
    const Bytes bytes = readBytes(job.output);
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_LT(text.find("moov"), text.find("mdat"));
}

TEST(ReencodeRender, LeavesAnOlderOutputAloneWhenItIsStoppedOrFails) {
    const TemporaryFolder folder;
    const Case test{"", {.codec = mpeg4, .sound = SoundCodec::aac}};
    const Asset source(movieFile(test.movie));
    ReencodeJob job = prepare(test, source, folder);
    writeBytes(job.output, {1, 2, 3});
    std::stop_source stop;
    job.stop = stop.get_token();
    job.progress = [&](double fraction) {
        if (fraction > 0.2) {
            stop.request_stop();
        }
    };
    try {
        exportReencoded(source, job);
        ADD_FAILURE() << "was not stopped";
    } catch (const MediaError& error) {
        EXPECT_EQ(error.cause(), MediaError::Cause::cancelled);
    }
    EXPECT_EQ(readBytes(job.output), (Bytes{1, 2, 3}));

    const Case freezing{"", test.movie, {30}};
    job = prepare(freezing, source, folder);
    job.freezeClips = {folder / "not there.mov"};
    EXPECT_THROW(exportReencoded(source, job), ZVError);
    job.output = folder / "no folder" / "out.mp4";
    EXPECT_THROW(exportReencoded(source, job), ZVError);
    EXPECT_THAT(folder.names(), testing::ElementsAre("clip0.mov", "out.mp4"));
}

} // namespace
} // namespace zelvra::test
