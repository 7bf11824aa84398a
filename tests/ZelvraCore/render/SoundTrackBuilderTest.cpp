// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/SoundTrackBuilder.h"

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/passthrough/file/MovieFileWriter.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/BoxTree.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/SoundFixtures.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zelvra {
namespace {

using namespace test;
using passthrough::OutputMovie;
using Container = MovieContainer;

struct WrittenSound {
    passthrough::OutputTrack track;
    std::optional<std::string> notice;
};

/// Writes a movie that has only the sound.
WrittenSound writeSound(const std::filesystem::path& source, const std::filesystem::path& output,
                        const std::vector<SoundPiece>& pieces, CMTime editStart, Container container) {
    const Asset asset(source);
    passthrough::SpoolStore spool(output.parent_path());
    const ChosenSound sound = chooseSound(asset, pieces, container);
    OutputMovie movie;
    movie.container = container;
    movie.tracks.push_back(sound.builder->build(editStart, spool));
    passthrough::writeMovieFile(movie, {media::bytesOf(asset), spool}, output);
    return {movie.tracks.front(), sound.notice};
}

struct SourceKind {
    std::string name;
    std::string extension;
    std::vector<std::string> coding;
    int rate = 48000;
    int channels = 2;
    int packetFrames = 1024;
    std::string outputExtension;
    bool kept = true;
};

void PrintTo(const SourceKind& kind, std::ostream* out) {
    *out << kind.name;
}

/// A second of the source, a freeze of 1.4 s, the rest: one cut in the sound, nowhere near a packet's end.
std::vector<SoundPiece> frozenAtOneSecond(double sourceSeconds) {
    return {play({0, 1}, {10007, 10000}), silence({1411, 1000}),
            play({10007, 10000}, CMTime::fromSeconds(sourceSeconds, 10000))};
}

/// The first of two channels as GStreamer plays it, by that decoder.
MovieSound playInGStreamer(const std::filesystem::path& movie, const std::string& decoder, int rate) {
    const auto output = movie.string() + ".raw";
    runChecked({"gst-launch-1.0", "-q", "filesrc", "location=" + movie.string(), "!", "qtdemux", "!",
                "aacparse", "!", decoder, "!", "audioconvert", "!", "audiorate", "!",
                "audio/x-raw,format=S16LE,channels=2", "!", "filesink", "location=" + output});
    MovieSound sound{rate, {}};
    const Bytes bytes = readBytes(output);
    for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
        sound.samples.push_back(static_cast<float>(static_cast<std::int16_t>(bytes[i] | bytes[i + 1] << 8)) /
                                32768);
    }
    return sound;
}

class SoundOf : public testing::TestWithParam<SourceKind> {
protected:
    /// Expects sound of the source's `sourceTime` at the output's `time`.
    void expectSourceTimeAt(const MovieSound& sound, double time, double sourceTime, double tolerance) const {
        const SourceKind& kind = GetParam();
        const auto expected = static_cast<std::int64_t>(std::llround(sourceTime * kind.rate));
        const auto found =
            locateSound(sound.between(time, 0.06), reference_, expected, kind.packetFrames + 64);
        ASSERT_TRUE(found) << "no known sound at " << time << " s";
        EXPECT_GT(found->correlation, 0.9) << "at " << time << " s";
        EXPECT_LE(std::llabs(found->sample - expected), tolerance) << "at " << time << " s";
    }

    static constexpr double sourceSeconds = 6;
    std::vector<float> reference_ =
        numberedSound(static_cast<std::int64_t>(sourceSeconds * GetParam().rate), GetParam().rate);
};

TEST_P(SoundOf, IsSilentInFreezesAndGoesOnWhereItStopped) {
    const SourceKind& kind = GetParam();
    const TemporaryFolder folder;
    const auto source = folder / ("source" + kind.extension);
    const auto output = folder / ("output" + kind.outputExtension);
    makeSoundMovie(source, kind.rate, kind.channels, sourceSeconds, kind.coding);
    const std::vector<SoundPiece> pieces{play({12345, 10000}, {2, 1}), silence({3, 2}),
                                         play({2, 1}, {31, 10}),       silence({7, 10}),
                                         silence({1001, 3000}),        play({31, 10}, {49, 10})};
    const Container container = kind.outputExtension == ".mov" ? Container::quickTime : Container::mpeg4;
    const WrittenSound done = writeSound(source, output, pieces, {2, 25}, container);
    EXPECT_EQ(!done.notice, kind.kept) << done.notice.value_or("");

    const MovieSound sound = readSound(output);
    ASSERT_EQ(sound.rate, kind.rate);
    const double packet = static_cast<double>(kind.packetFrames) / kind.rate;
    const bool exact = kind.packetFrames == 1 || !kind.kept;
    const double halfPacket = exact ? 1 : kind.packetFrames / 2.0 + 1;
    expectSourceTimeAt(sound, 0, 1.2345, 1); // the range starts at its sample
    expectSourceTimeAt(sound, 0.6, 1.8345, 1);
    expectSourceTimeAt(sound, 2.2655 + 3 * packet, 2 + 3 * packet, halfPacket);
    expectSourceTimeAt(sound, 3.2, 2.9345, halfPacket);
    const double resumed = 0.7655 + 1.5 + 1.1 + 0.7 + 1001.0 / 3000;
    expectSourceTimeAt(sound, resumed + 3 * packet, 3.1 + 3 * packet, halfPacket);
    expectSourceTimeAt(sound, resumed + 1.6, 4.7, halfPacket);
    EXPECT_LT(peak(sound.between(0.7655 + 2 * packet, 1.5 - 4 * packet)), 0.001);
    EXPECT_LT(peak(sound.between(3.3655 + 2 * packet, 1.03 - 4 * packet)), 0.001);
    EXPECT_NEAR(static_cast<double>(sound.samples.size()) / kind.rate, resumed + 1.8, packet + 0.022);

    const auto complaints = runProcess({"ffmpeg", "-v", "warning", "-i", output.string(), "-f", "null", "-"});
    EXPECT_EQ(complaints.errors, "");
}

std::vector<SourceKind> sourceKinds() {
    const std::vector<std::string> aac{"-c:a", "aac", "-b:a", "160k"};
    return {
        {"Aac48", ".mov", aac, 48000, 2, 1024, ".mov"},
        {"Aac44Mono", ".mp4", aac, 44100, 1, 1024, ".mp4"},
        {"AacSurround", ".mp4", {"-c:a", "aac", "-b:a", "512k"}, 48000, 6, 1024, ".mp4"},
        {"AacToMp4", ".mov", aac, 48000, 2, 1024, ".mp4"},
        {"AacToMov", ".mp4", aac, 44100, 2, 1024, ".mov"},
        {"Pcm16Little", ".mov", {"-c:a", "pcm_s16le"}, 48000, 2, 1, ".mov"},
        {"Pcm16Big", ".mov", {"-c:a", "pcm_s16be"}, 44100, 1, 1, ".mov"},
        {"Pcm24", ".mov", {"-c:a", "pcm_s24le"}, 48000, 6, 1, ".mov"},
        {"PcmFloat", ".mov", {"-c:a", "pcm_f32le"}, 96000, 2, 1, ".mov"},
        {"Pcm8", ".mov", {"-c:a", "pcm_u8"}, 48000, 1, 1, ".mov"},
        {"ALaw", ".mov", {"-c:a", "pcm_alaw"}, 48000, 2, 1, ".mov", true},
        {"MuLaw", ".mov", {"-c:a", "pcm_mulaw"}, 48000, 2, 1, ".mov"},
        {"PcmToMp4", ".mov", {"-c:a", "pcm_s16le"}, 48000, 2, 1024, ".mp4", false},
        {"Ac3", ".mp4", {"-c:a", "ac3", "-b:a", "192k"}, 48000, 2, 1536, ".mp4"},
        {"Ac3At44", ".mov", {"-c:a", "ac3", "-b:a", "192k"}, 44100, 2, 1536, ".mp4"},
        {"Eac3", ".mp4", {"-c:a", "eac3", "-b:a", "192k"}, 48000, 2, 1536, ".mov"},
        {"Alac", ".mov", {"-c:a", "alac"}, 48000, 2, 4096, ".mov"},
        {"AlacToMp4", ".mov", {"-c:a", "alac"}, 44100, 1, 4096, ".mp4"},
        {"Opus", ".mp4", {"-c:a", "libopus", "-b:a", "128k"}, 48000, 2, 960, ".mp4"},
        {"OpusToMov", ".mp4", {"-c:a", "libopus", "-b:a", "128k"}, 48000, 2, 960, ".mov"},
        {"OpusLong",
         ".mp4",
         {"-c:a", "libopus", "-b:a", "96k", "-frame_duration", "60"},
         48000,
         1,
         2880,
         ".mp4"},
        {"Mp3", ".mp4", {"-c:a", "libmp3lame", "-b:a", "192k"}, 44100, 2, 1024, ".mp4", false},
    };
}

INSTANTIATE_TEST_SUITE_P(Source, SoundOf, testing::ValuesIn(sourceKinds()),
                         [](const auto& tested) { return tested.param.name; });

TEST(SoundTrackBuilder, EncodesAnewWhatSeveralEditsCutApart) {
    constexpr std::int64_t rate = 48000;
    const auto source =
        movieFile({.frames = 150, .sound = SoundCodec::aac, .shown = {{{1, 1}, {3, 2}}, {{3, 1}, {1, 1}}}});
    const std::vector<float> reference = numberedSound(5 * rate, int{rate});
    const TemporaryFolder folder;
    const std::vector<SoundPiece> pieces{play({0, 1}, {1, 1}), silence({1, 1}), play({1, 1}, {5, 2})};
    const WrittenSound done = writeSound(source, folder / "output.mp4", pieces, {1, 15}, Container::mpeg4);
    EXPECT_TRUE(done.notice);
    const MovieSound sound = readSound(folder / "output.mp4");
    const MovieSound original = readSound(source); // whose second edit begins at a packet there
    const auto heardAt = [&](const MovieSound& heard, double time, std::int64_t expected) {
        return static_cast<double>(
            locateSound(heard.between(time, 0.1), reference, expected, 3000).value().sample);
    };
    EXPECT_NEAR(heardAt(sound, 0.5, 3 * rate / 2), 72'000, 1);
    EXPECT_NEAR(heardAt(sound, 2.2, 11 * rate / 5), 105'600, 1);
    EXPECT_NEAR(heardAt(sound, 3, 7 * rate / 2), heardAt(original, 2, 7 * rate / 2), 1);
    EXPECT_LT(peak(sound.between(1.03, 0.94)), 0.001);
}

TEST(SoundTrackBuilder, RefusesToFillDaysWithSilence) {
    const Asset source(movieFile({.frames = 60, .sound = SoundCodec::aac}));
    EXPECT_THROW(chooseSound(source, std::vector{play({0, 1}, {2'592'000, 1})}, Container::mpeg4),
                 MediaError);
}

TEST(SoundTrackBuilder, PlaysRightInGStreamer) {
    const TemporaryFolder folder;
    constexpr std::int64_t rate = 48000;
    const auto source = folder / "source.mov";
    makeSoundMovie(source, int{rate}, 2, 4, {"-c:a", "aac", "-b:a", "160k"});
    const std::vector<float> reference = numberedSound(4 * rate, int{rate});
    const auto heardAt = [&](const MovieSound& sound, double time, std::int64_t expected) {
        return locateSound(sound.between(time, 0.1), reference, expected, 3000).value().sample;
    };
    for (const auto* decoder : {"avdec_aac", "faad"}) {
        // One of them drops the first packet, of the source as well.
        const std::int64_t early =
            heardAt(playInGStreamer(source, decoder, int{rate}), 0.5, rate / 2) - rate / 2;
        for (const Container container : {Container::quickTime, Container::mpeg4}) {
            const auto output = folder / "output.mov";
            writeSound(source, output, frozenAtOneSecond(4), {2002, 30000}, container);
            const MovieSound sound = playInGStreamer(output, decoder, int{rate});
            const std::int64_t afterFreeze = 3 * rate - rate * 1411 / 1000;
            EXPECT_EQ(heardAt(sound, 0.5, rate / 2), rate / 2 + early) << decoder;
            EXPECT_NEAR(static_cast<double>(heardAt(sound, 3, afterFreeze) - early),
                        static_cast<double>(afterFreeze), 513)
                << decoder;
            EXPECT_LT(peak(sound.between(1.06, 1.3)), 0.001) << decoder;
        }
    }
}

TEST(SoundTrackBuilder, PassesThroughRealMovies) {
    int movies = 0;
    for (const std::filesystem::path& source : sharedMovies()) {
        const bool usable = !source.filename().string().starts_with("broken") &&
                            source.extension() != ".md" && Asset(source).hasAudio();
        const MovieSound original = usable ? readSound(source) : MovieSound{};
        const double length =
            original.rate > 0 ? static_cast<double>(original.samples.size()) / original.rate : 0;
        if (length < 2.5) {
            continue;
        }
        SCOPED_TRACE(source.filename().string());
        const TemporaryFolder folder;
        const auto output = folder / "output.mov";
        const WrittenSound done =
            writeSound(source, output, frozenAtOneSecond(length), {1, 15}, Container::quickTime);
        EXPECT_FALSE(done.notice) << *done.notice;
        const MovieSound sound = readSound(output);
        EXPECT_NEAR(static_cast<double>(sound.samples.size()) / sound.rate, length + 1.411, 0.05);
        EXPECT_LT(peak(sound.between(1.1, 1.2)), 0.001);
        for (const double time : {0.3, 2.0}) {
            const double heard = time > 1 ? time + 1.411 : time;
            const auto expected = static_cast<std::int64_t>(time * sound.rate);
            if (peak(original.between(time, 0.2)) > 0.01) {
                const auto found = locateSound(sound.between(heard, 0.2), original.samples, expected, 3000);
                ASSERT_TRUE(found) << "no known sound at " << heard;
                EXPECT_NEAR(static_cast<double>(found->sample), static_cast<double>(expected),
                            time > 1 ? 514 : 1);
            }
        }
        ++movies;
    }
    if (movies == 0) {
        GTEST_SKIP() << "no real movies here";
    }
}

} // namespace
} // namespace zelvra
