#include "ZelvraApp/platform/Player.h"

#include "ZelvraCore/Render.h"
#include "tests/platform/PlayedMovie.h"
#include "tests/support/Files.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/NumberedPicture.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

struct Kind {
    const char* name;
    NumberedMovie movie;
};

std::ostream& operator<<(std::ostream& stream, const Kind& kind) {
    return stream << kind.name;
}

CMTime middleOf(const FrameIndex::Frame& frame) {
    return {2 * frame.time.value + frame.duration.value, 2 * frame.time.timescale};
}

void expectFrame(PlayedMovie& movie, std::size_t index) {
    const auto at = movie.frames().containing(movie.player().currentTime());
    ASSERT_TRUE(at);
    EXPECT_EQ(at->index, index);
    const auto shown = movie.numberOnScreen();
    EXPECT_TRUE(shown);
    EXPECT_EQ(shown, movie.numberGrabbed()) << "frame " << index;
}

/// Whatever the player is asked to do, what it shows is what the engine grabs at its current time.
void expectGrabbedFramesOnScreen(const std::filesystem::path& file) {
    PlayedMovie movie(file);
    const FrameIndex& frames = movie.frames();
    expectFrame(movie, 0);
    const std::size_t last = frames.count() - 1;
    for (const std::size_t index : {last / 2, last / 3, last, std::size_t{1}, last - 1}) {
        EXPECT_TRUE(movie.seek(frames.frame(index).time));
        EXPECT_EQ(movie.player().currentTime(), frames.frame(index).time);
        expectFrame(movie, index);
    }
    const CMTime withinFrame = middleOf(frames.frame(last / 4));
    EXPECT_TRUE(movie.seek(withinFrame));
    EXPECT_EQ(movie.player().currentTime(), withinFrame);
    expectFrame(movie, last / 4);

    std::size_t index = last / 4;
    for (const int count : {1, 1, -1, 2, -2, 5, 1}) {
        EXPECT_TRUE(movie.step(count));
        index += static_cast<std::size_t>(count);
        EXPECT_EQ(movie.player().currentTime(), frames.frame(index).time);
        expectFrame(movie, index);
    }

    EXPECT_TRUE(movie.seek(frames.first().time));
    movie.playUntil([&] { return movie.player().currentTime() > frames.frame(last / 3).time; });
    movie.player().pause();
    const auto paused = frames.containing(movie.player().currentTime());
    ASSERT_TRUE(paused);
    EXPECT_GT(paused->index, 0U);
    expectFrame(movie, paused->index);
}

class PlayerFrames : public testing::TestWithParam<Kind> {};

TEST_P(PlayerFrames, AreThoseThatTheEngineGrabs) {
    expectGrabbedFramesOnScreen(movieFile(GetParam().movie));
}

CMTimeRange stretch(int from, int to) {
    return CMTimeRange::fromStartToEnd({from, 30}, {to, 30});
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PlayerFrames,
    testing::Values(
        Kind{"plain", {.sound = SoundCodec::aac}}, Kind{"one group", {.frames = 120, .gop = 250}},
        Kind{"29.97", {.rate = 30000, .ratePer = 1001, .sound = SoundCodec::aac}},
        Kind{"240", {.rate = 240, .frames = 96, .gop = 12}},
        Kind{
            "variable",
            {.frames = 12, .frameTicks = {20, 20, 40, 1, 19, 300, 20, 21, 19, 20, 60, 20}, .timescale = 600}},
        Kind{"trimmed within a group", {.frames = 90, .sound = SoundCodec::aac, .shown = {stretch(17, 70)}}},
        Kind{"two pieces", {.frames = 90, .shown = {stretch(5, 20), stretch(47, 80)}}},
        Kind{"hevc open", {.codec = MovieCodec::hevc, .gop = 15, .openGop = true}},
        Kind{"quarter turn", {.orientation = Orientation::quarterTurn}},
        Kind{"mirrored", {.orientation = Orientation::mirrored}},
        Kind{"long pixels", {.pixelAspect = "4/3", .orientation = Orientation::halfTurn}}));

TEST(PlayerFramesOfOwnExports, AreThoseThatTheEngineGrabs) {
    const TemporaryFolder folder;
    for (const MovieCodec codec : {MovieCodec::h264, MovieCodec::hevc}) {
        const auto source = movieFile({.frames = 90, .codec = codec, .sound = SoundCodec::aac});
        const std::vector highlights{markerHighlight(3, {50, 30}, {1, 2}, {320, 180})};
        renderHighlights(source, highlights, folder / "export.mov");
        expectGrabbedFramesOnScreen(folder / "export.mov");
    }
}

} // namespace
} // namespace zelvra::test
