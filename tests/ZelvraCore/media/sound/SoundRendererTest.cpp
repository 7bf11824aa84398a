// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundEncoder.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/SoundFixtures.h"

#include <gtest/gtest.h>

namespace zelvra::media {
namespace {

using namespace test;

constexpr int rate = 48000;

/// The first channel of everything that is left.
std::vector<float> readAll(SoundRenderer& sound, std::size_t framesAtOnce) {
    const auto channels = static_cast<std::size_t>(sound.format().channels);
    std::vector<float> buffer(framesAtOnce * channels);
    std::vector<float> first;
    while (const std::size_t frames = sound.read(buffer)) {
        for (std::size_t i = 0; i < frames; ++i) {
            first.push_back(buffer[i * channels]);
        }
    }
    return first;
}

std::vector<float> stretch(const std::vector<float>& sound, std::int64_t from, std::int64_t to) {
    return {sound.begin() + from, sound.begin() + to};
}

TEST(SoundRenderer, ResumesAfterEachOfAThousandFreezesAtTheSampleWhereItStopped) {
    const auto file = movieFile({.frames = 120, .sound = SoundCodec::pcm});
    const std::vector<float> source = numberedSound(4 * rate, rate);
    std::vector<SoundPiece> pieces;
    const CMTime step(1001, 300'000); // 160.16 samples
    const CMTime freeze(1001, 1'000'000);
    for (int i = 0; i < 1000; ++i) {
        pieces.push_back(play(step * i, step * (i + 1)));
        pieces.push_back(silence(freeze));
    }
    SoundRenderer sound(Asset(file), pieces);
    const std::vector<float> all = readAll(sound, 1000);
    EXPECT_EQ(static_cast<std::int64_t>(all.size()), sound.totalFrames());
    EXPECT_NEAR(static_cast<double>(all.size()), 1000 * (step + freeze).seconds() * rate, 1.01);

    std::vector<float> heard;
    for (int i = 0; i < 1000; ++i) { // take the silences out again
        const auto source0 = static_cast<std::int64_t>((step * i).seconds() * rate + 0.5);
        const auto source1 = static_cast<std::int64_t>((step * (i + 1)).seconds() * rate + 0.5);
        const auto silent = static_cast<std::int64_t>((freeze * i).seconds() * rate + 0.5);
        const std::vector<float> piece = stretch(all, source0 + silent, source1 + silent);
        heard.insert(heard.end(), piece.begin(), piece.end());
    }
    for (std::size_t i = 0; i < heard.size(); ++i) {
        ASSERT_NEAR(heard[i], source[i] * 32000 / 32768, 1.0 / 32768) << "sample " << i;
    }
}

TEST(SoundRenderer, PlacesCodedSoundByItsEdits) {
    const auto file =
        movieFile({.frames = 150, .sound = SoundCodec::aac, .soundDelay = 0.5, .soundSeconds = 3});
    const std::vector<float> source = numberedSound(3 * rate, rate);
    SoundRenderer sound(Asset(file), std::vector{play({0, 1}, {5, 1})});
    const std::vector<float> all = readAll(sound, 777);
    ASSERT_EQ(all.size(), 5u * rate);
    EXPECT_LT(peak(stretch(all, 0, rate / 2 - 1100)), 0.001F);
    EXPECT_LT(peak(stretch(all, 7 * rate / 2 + 1100, 5 * rate)), 0.001F);
    const auto found = locateSound(stretch(all, rate, rate + 4800), source, rate / 2, 2000);
    ASSERT_TRUE(found);
    EXPECT_NEAR(static_cast<double>(found->sample), rate / 2, 1); // the delay is in ticks of the movie
}

TEST(SoundRenderer, SeeksToTheSampleOfAPieceAnywhere) {
    const auto file = movieFile({.frames = 300, .sound = SoundCodec::aac});
    const std::vector<float> source = numberedSound(10 * rate, rate);
    SoundRenderer sound(Asset(file), std::vector{play({700'001, 100'000}, {8, 1}), play({3, 1}, {4, 1})});
    const std::vector<float> all = readAll(sound, 4096);
    const std::vector<float> far = stretch(all, 0, 960); // from the first sample on
    const std::vector<float> back = stretch(all, 48'000, 48'960);
    EXPECT_EQ(locateSound(far, source, 7 * rate, 500).value().sample, 336'000);
    EXPECT_GT(locateSound(far, source, 7 * rate, 500).value().correlation, 0.95);
    EXPECT_EQ(locateSound(back, source, 3 * rate, 500).value().sample, 3 * rate);
}

TEST(SoundRenderer, EndsWhenAskedTo) {
    const auto file = movieFile({.frames = 150, .sound = SoundCodec::aac});
    std::stop_source stop;
    SoundRenderer sound(Asset(file), std::vector{play({0, 1}, {5, 1})}, stop.get_token());
    std::vector<float> buffer(2000);
    EXPECT_EQ(sound.read(buffer), 1000u);
    stop.request_stop();
    EXPECT_THROW(sound.read(buffer), MediaError);
}

struct EncoderCase {
    int sourceRate;
    int channels;
    int encodedRate;
    int encodedChannels;
    std::int64_t leastBitRate;
};

class SoundEncoderOf : public testing::TestWithParam<EncoderCase> {};

TEST_P(SoundEncoderOf, KeepsRateAndChannelsAndLastsAsLong) {
    const EncoderCase& expected = GetParam();
    const TemporaryFolder folder;
    const auto file = folder / "sound.mov";
    makeSoundMovie(file, expected.sourceRate, expected.channels, 1.5, {"-c:a", "pcm_s16le"});
    SoundEncoder encoder(SoundRenderer(Asset(file), std::vector{play({0, 1}, {3, 2})}));
    EXPECT_EQ(encoder.sampleRate(), expected.encodedRate);
    EXPECT_EQ(encoder.channels(), expected.encodedChannels);
    EXPECT_GE(encoder.bitRate(), expected.leastBitRate);
    std::int64_t end = 0;
    while (const auto packet = encoder.next()) {
        EXPECT_EQ(packet->decodeTime, end);
        end += packet->duration;
    }
    EXPECT_EQ(encoder.totalFrames(), expected.encodedRate * 3 / 2);
    EXPECT_GE(end, encoder.priming() + encoder.totalFrames());
    EXPECT_LT(end, encoder.priming() + encoder.totalFrames() + 3 * encoder.packetFrames());
}

INSTANTIATE_TEST_SUITE_P(
    Formats, SoundEncoderOf,
    testing::Values(EncoderCase{48000, 2, 48000, 2, 256'000}, EncoderCase{44100, 1, 44100, 1, 128'000},
                    EncoderCase{48000, 6, 48000, 6, 640'000}, EncoderCase{48000, 8, 48000, 6, 640'000},
                    EncoderCase{192'000, 2, 96000, 2, 256'000}, EncoderCase{8000, 1, 8000, 1, 40'000},
                    EncoderCase{37800, 4, 44100, 4, 512'000}));

} // namespace
} // namespace zelvra::media
