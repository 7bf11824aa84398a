// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/NumberedSound.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <utility>

namespace zelvra::test {
namespace {

/// Every frame in order, each at its time.
void expectWhole(const NumberedMovie& movie) {
    const ShownMovie shown = showMovie(movieFile(movie));
    EXPECT_TRUE(shown.faults.empty()) << shown.faults.front();
    ASSERT_EQ(shown.frames.size(), static_cast<std::size_t>(movie.frames));
    for (int n = 0; n < movie.frames; ++n) {
        const ShownFrame& frame = shown.frames[static_cast<std::size_t>(n)];
        EXPECT_EQ(frame, (ShownFrame{movie.timeOf(n), n, {}}));
    }
}

TEST(NumberedMovie, HasReadableNumbersInEveryKindOfFile) {
    for (const MovieCodec codec :
         {MovieCodec::h264, MovieCodec::hevc, MovieCodec::mpeg4, MovieCodec::proRes, MovieCodec::vp9}) {
        expectWhole({.codec = codec, .container = codec == MovieCodec::vp9 ? "mp4" : "mov"});
    }
    for (const Orientation orientation : {Orientation::quarterTurn, Orientation::halfTurn,
                                          Orientation::threeQuarterTurn, Orientation::mirrored}) {
        expectWhole({.width = 180, .height = 320, .frames = 10, .orientation = orientation});
    }
    expectWhole({.rate = 30000, .ratePer = 1001, .openGop = true, .indexFirst = true});
    expectWhole({.frames = 45, .frameTicks = {20, 21, 1, 40}, .timescale = 600});
    expectWhole({.interlaced = true});
    expectWhole({.codec = MovieCodec::hevc, .pixelFormat = "yuv420p10le", .sampleEntry = "hev1"});
    expectWhole({.width = 323, .height = 181, .pixelFormat = "yuv444p", .sound = SoundCodec::aac});
    expectWhole({.fragmented = true});
    expectWhole({.sound = SoundCodec::aac, .twoSampleEntries = true});
    expectWhole({.sound = SoundCodec::aac, .beyond4GiB = true});
}

TEST(NumberedMovie, ShowsOnlyTheStretchesOfItsEditList) {
    const NumberedMovie movie{.frames = 90,
                              .sound = SoundCodec::aac,
                              .shown = {{CMTime(10, 30), CMTime(20, 30)}, {CMTime(50, 30), CMTime(15, 30)}}};
    const ShownMovie shown = showMovie(movieFile(movie));
    ASSERT_EQ(shown.frames.size(), 35U);
    EXPECT_EQ(shown.frames[0], (ShownFrame{CMTime::zero(), 10, {}}));
    EXPECT_EQ(shown.frames[20], (ShownFrame{CMTime(20, 30), 50, {}}));
    EXPECT_EQ(seekFrame(movieFile(movie), CMTime(20, 30)), shown.frames[20]);
}

TEST(NumberedMovie, HasSoundWhoseTimeIsFoundToTheSample) {
    for (const SoundCodec codec : {SoundCodec::aac, SoundCodec::pcm, SoundCodec::ac3, SoundCodec::eac3,
                                   SoundCodec::alac, SoundCodec::opus}) {
        const NumberedMovie movie{.sound = codec, .container = codec == SoundCodec::pcm ? "mov" : "mp4"};
        const std::vector<float> source = numberedSound(96000, 48000);
        const MovieSound sound = readSound(movieFile(movie));
        ASSERT_EQ(sound.rate, 48000);
        const auto found = locateSound(sound.between(1.0, 0.02), source, 48100, 2000);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->sample, 48000) << static_cast<int>(codec);
        EXPECT_GT(found->correlation, 0.95) << static_cast<int>(codec);
    }
    const MovieSound late = readSound(movieFile({.sound = SoundCodec::pcm, .soundDelay = 0.25}));
    EXPECT_EQ(peak(late.between(0, 0.25)), 0);
    EXPECT_EQ(locateSound(late.between(0.25, 0.02), numberedSound(48000, 48000), 100, 300)->sample, 0);
}

TEST(Process, ReturnsExitCodeAndBothOutputs) {
    const ProcessResult result =
        runProcess({"sh", "-c", "cat; echo bad >&2; exit 3"}, [sent = false]() mutable -> std::string {
            return std::exchange(sent, true) ? "" : "good";
        });
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.output, "good");
    EXPECT_EQ(result.errors, "bad\n");
    EXPECT_THROW(runChecked({"false"}), std::runtime_error);
    EXPECT_THROW(runProcess({"/nowhere/at-all"}), std::system_error);
}

} // namespace
} // namespace zelvra::test
