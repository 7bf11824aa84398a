// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/Player.h"

#include "ZelvraCore/Render.h"
#include "tests/ZelvraApp/player/PlayedMovie.h"
#include "tests/support/Files.h"
#include "tests/support/NamedMovie.h"
#include "tests/support/NumberedPicture.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

void expectFrame(PlayedMovie& movie, std::size_t index) {
    const auto at = movie.frames().containing(movie.player().currentTime());
    ASSERT_TRUE(at);
    EXPECT_EQ(at->index, index);
    const auto shown = movie.numberOnScreen();
    EXPECT_TRUE(shown);
    EXPECT_EQ(shown, movie.numberGrabbed()) << "frame " << index;
}

/// After every operation the player shows the picture that the engine grabs at its current time.
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

class PlayerFrames : public testing::TestWithParam<NamedMovie> {};

TEST_P(PlayerFrames, AreThoseThatTheEngineGrabs) {
    expectGrabbedFramesOnScreen(movieFile(GetParam().movie));
}

CMTimeRange stretch(int from, int to) {
    return CMTimeRange::fromStartToEnd({from, 30}, {to, 30});
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PlayerFrames,
    testing::Values(NamedMovie{"plain", {.sound = SoundCodec::aac}},
                    NamedMovie{"one group", {.frames = 120, .gop = 250}},
                    NamedMovie{"29.97", {.rate = 30000, .ratePer = 1001, .sound = SoundCodec::aac}},
                    NamedMovie{"240", {.rate = 240, .frames = 96, .gop = 12}},
                    NamedMovie{"variable",
                               {.frames = 12,
                                .frameTicks = {20, 20, 40, 1, 19, 300, 20, 21, 19, 20, 60, 20},
                                .timescale = 600}},
                    NamedMovie{"trimmed within a group",
                               {.frames = 90, .sound = SoundCodec::aac, .shown = {stretch(17, 70)}}},
                    NamedMovie{"two pieces", {.frames = 90, .shown = {stretch(5, 20), stretch(47, 80)}}},
                    NamedMovie{"hevc open", {.codec = MovieCodec::hevc, .gop = 15, .openGop = true}},
                    NamedMovie{"quarter turn", {.orientation = Orientation::quarterTurn}},
                    NamedMovie{"mirrored", {.orientation = Orientation::mirrored}},
                    NamedMovie{"long pixels", {.pixelAspect = "4/3", .orientation = Orientation::halfTurn}}));

TEST(PlayerFramesOfOwnExports, AreThoseThatTheEngineGrabs) {
    const TemporaryFolder folder;
    for (const MovieCodec codec : {MovieCodec::h264, MovieCodec::hevc}) {
        const auto source = movieFile({.frames = 90, .codec = codec, .sound = SoundCodec::aac});
        const std::vector highlights{markerHighlight(3, {50, 30}, {1, 2}, {320, 180})};
        renderHighlights(source, highlights, folder / "export.mov");
        expectGrabbedFramesOnScreen(folder / "export.mov");
    }
}

const NumberedMovie plain{.sound = SoundCodec::aac};

/// Records a player's signals.
struct PlayerLog {
    explicit PlayerLog(Player& player) {
        QObject::connect(&player, &Player::periodicTime,
                         [this](const CMTime& time) { times.push_back(time); });
        QObject::connect(&player, &Player::rateChanged, [this](double rate) { rates.push_back(rate); });
        QObject::connect(&player, &Player::reachedEnd, [this] { ++ends; });
        QObject::connect(&player, &Player::itemFailed, [this](const QString& why) { reason = why; });
    }
    std::vector<CMTime> times;
    std::vector<double> rates;
    int ends = 0;
    QString reason;
};

TEST(PlayerBounds, StopAtTheUpperAndContinueFromTheLower) {
    PlayedMovie movie(movieFile(plain));
    Player& player = movie.player();
    PlayerLog log(player);
    for (const CMTime& upper : {CMTime(25, 30), CMTime(51, 60), CMTime(1700, 2000)}) {
        const CMTime lower{15, 30};
        player.setPlaybackBounds(lower, upper);
        EXPECT_TRUE(movie.seek({20, 30}));
        for (int round = 0; round < 2; ++round) { // stopping twice does not creep
            const int before = log.ends;
            movie.playUntil([&] { return log.ends > before; });
            EXPECT_EQ(player.rate(), 0);
            EXPECT_EQ(player.currentTime(), upper);
            expectFrame(movie, 25);
            EXPECT_EQ(player.currentTime(), upper);
        }
        player.setPeriodicTimeObservation(true);
        log.times.clear();
        const int before = log.ends;
        movie.playUntil([&] { return log.ends > before; });
        player.setPeriodicTimeObservation(false);
        ASSERT_FALSE(log.times.empty());
        EXPECT_GE(log.times.front(), lower);
        EXPECT_LE(log.times.front(), CMTime(18, 30));
    }
    player.setPlaybackBounds(CMTime::invalid(), CMTime::invalid());
    EXPECT_EQ(player.currentTime(), CMTime(1700, 2000));
    movie.playUntil([&] { return player.currentTime() > CMTime(30, 30); });
}

TEST(PlayerBounds, ApplyToWhatAlreadyPlays) {
    PlayedMovie movie(movieFile(plain));
    PlayerLog log(movie.player());
    movie.playUntil([&] { return movie.player().currentTime() >= CMTime(20, 30); });
    movie.player().setPlaybackBounds(CMTime::zero(), {10, 30});
    EXPECT_TRUE(spinUntil([&] { return log.ends == 1; }));
    EXPECT_EQ(movie.player().currentTime(), CMTime(10, 30));
    EXPECT_TRUE(spinUntil([&] { return movie.numberOnScreen() == 10; }));
}

TEST(PlayerEnd, StaysOnTheLastFrameAndPlaysAgainFromTheStart) {
    for (const double sound : {0.0, 2.5}) { // as long as the picture, and outlasting it
        PlayedMovie movie(movieFile({.sound = SoundCodec::aac, .soundSeconds = sound}));
        Player& player = movie.player();
        PlayerLog log(player);
        EXPECT_TRUE(movie.seek({50, 30}));
        movie.playUntil([&] { return log.ends == 1; });
        EXPECT_EQ(log.rates, (std::vector<double>{1, 0}));
        EXPECT_EQ(player.currentTime(), CMTime(59, 30));
        expectFrame(movie, 59);
        EXPECT_FALSE(movie.step(1));
        EXPECT_TRUE(movie.step(-1));
        expectFrame(movie, 58);

        movie.playUntil([&] { return log.ends == 2; });
        movie.playUntil([&] { return player.currentTime() > CMTime(3, 30); });
        EXPECT_LT(player.currentTime(), CMTime(30, 30));
        EXPECT_EQ(log.ends, 2);
    }
}

TEST(PlayerEnd, AsUpperBoundIsTheBoundItself) {
    PlayedMovie movie(movieFile(plain));
    PlayerLog log(movie.player());
    const CMTime end = movie.asset().duration();
    movie.player().setPlaybackBounds({1, 1}, end);
    EXPECT_TRUE(movie.seek({55, 30}));
    movie.playUntil([&] { return log.ends == 1; });
    EXPECT_EQ(movie.player().currentTime(), end);
    EXPECT_EQ(movie.numberOnScreen(), 59);
}

TEST(PlayerSeeks, StayInsideTheMovie) {
    PlayedMovie movie(movieFile({}));
    EXPECT_TRUE(movie.seek({-5, 1}));
    EXPECT_EQ(movie.player().currentTime(), CMTime::zero());
    EXPECT_TRUE(movie.seek({1000, 1}));
    EXPECT_EQ(movie.player().currentTime(), movie.asset().duration());
    EXPECT_EQ(movie.numberOnScreen(), 59);
    EXPECT_FALSE(movie.seek(CMTime::invalid()));
    EXPECT_FALSE(movie.seek(CMTime::positiveInfinity()));
}

TEST(PlayerSeeks, InFlightAreOvertakenByTheLatest) {
    PlayedMovie movie(movieFile({.frames = 120, .gop = 250}));
    Player& player = movie.player();
    std::vector<QCoro::Task<bool>> tasks;
    for (int frame = 100; frame > 20; frame -= 8) {
        tasks.push_back(player.seek({frame, 30}));
        EXPECT_EQ(player.currentTime(), CMTime(frame, 30));
    }
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        EXPECT_EQ(QCoro::waitFor(tasks[i]), i + 1 == tasks.size()) << i;
    }
    expectFrame(movie, 28);

    auto first = player.step(1); // steps add up
    auto second = player.step(1);
    auto third = player.step(1);
    EXPECT_TRUE(QCoro::waitFor(third));
    EXPECT_FALSE(QCoro::waitFor(first));
    EXPECT_FALSE(QCoro::waitFor(second));
    expectFrame(movie, 31);
}

TEST(PlayerSeeks, KeepAPlayingMoviePlaying) {
    PlayedMovie movie(movieFile(plain));
    Player& player = movie.player();
    movie.playUntil([&] { return player.currentTime() > CMTime(3, 30); });
    EXPECT_TRUE(movie.seek({40, 30}));
    EXPECT_GT(player.rate(), 0);
    EXPECT_TRUE(spinUntil([&] { return player.currentTime() > CMTime(45, 30); }));
    player.pause();
    expectFrame(movie, movie.frames().containing(player.currentTime())->index);
}

TEST(PlayerSeeks, ScrubsComeToRestExactly) {
    PlayedMovie movie(movieFile({.frames = 120, .gop = 30}));
    Player& player = movie.player();
    player.scrub({75, 30});
    EXPECT_EQ(player.currentTime(), CMTime(75, 30));
    EXPECT_TRUE(spinUntil([&] { return !player.isMoving(); }));
    EXPECT_EQ(player.currentTime(), CMTime(75, 30));
    expectFrame(movie, 75);
    for (int frame = 76; frame < 100; ++frame) {
        player.scrub({frame, 30});
    }
    EXPECT_TRUE(movie.seek({99, 30}));
    expectFrame(movie, 99);
}

TEST(PlayerObservation, FollowsPlaybackAndPausedSeeks) {
    PlayedMovie movie(movieFile({.frames = 90, .sound = SoundCodec::aac}));
    Player& player = movie.player();
    PlayerLog log(player);
    EXPECT_TRUE(movie.seek({5, 30}));
    EXPECT_TRUE(log.times.empty());
    player.setPeriodicTimeObservation(true);
    EXPECT_TRUE(movie.seek({10, 30}));
    const std::vector<CMTime> target(2, CMTime(10, 30)); // when the seek begins, and when it ends
    EXPECT_EQ(log.times, target);
    spinFor(120);
    EXPECT_EQ(log.times, target); // nothing moves
    movie.playUntil([&] { return player.currentTime() > CMTime(40, 30); });
    player.pause();
    EXPECT_GT(log.times.size(), 15U);
    EXPECT_TRUE(std::ranges::is_sorted(log.times));
    EXPECT_EQ(log.times.back(), player.currentTime());

    player.play();
    player.replaceCurrentItem(std::nullopt);
    log.times.clear();
    spinFor(120);
    EXPECT_TRUE(log.times.empty());
    EXPECT_EQ(player.rate(), 0);
}

TEST(PlayerItems, AreReplacedWhilePlayingAndSeeking) {
    PlayedMovie movie(movieFile(plain));
    Player& player = movie.player();
    movie.playUntil([&] { return player.currentTime() > CMTime(3, 30); });
    auto overtaken = player.seek({50, 30});
    player.replaceCurrentItem(itemOf(movieFile({.frames = 90})));
    EXPECT_EQ(player.rate(), 0);
    EXPECT_EQ(player.currentTime(), CMTime::zero());
    EXPECT_FALSE(QCoro::waitFor(overtaken));
    EXPECT_TRUE(movie.seek({80, 30})); // waits for the item
    expectFrame(movie, 80);
    player.replaceCurrentItem(std::nullopt);
    EXPECT_EQ(player.currentItem(), nullptr);
    EXPECT_FALSE(movie.seek({1, 30}));
    EXPECT_FALSE(movie.step(1));
    player.play();
    EXPECT_EQ(player.rate(), 0);
}

TEST(PlayerItems, ThatFailReportTheCause) {
    const TemporaryFolder folder;
    const auto gone = folder / "gone.mov";
    std::filesystem::copy_file(movieFile({}), gone);
    PlayerItem item = itemOf(gone);
    std::filesystem::remove(gone);
    Player player;
    PlayerLog log(player);
    player.replaceCurrentItem(item);
    player.play();
    auto waiting = player.seek({1, 1});
    EXPECT_TRUE(spinUntil([&] { return !log.reason.isEmpty(); }));
    EXPECT_TRUE(log.reason.startsWith("“gone.mov” cannot be played: "));
    EXPECT_TRUE(log.reason.contains("No such file")) << log.reason.toStdString();
    EXPECT_FALSE(QCoro::waitFor(waiting));
    EXPECT_EQ(player.rate(), 0);

    item = itemOf(movieFile({}));
    item.path = folder / "text.mov";
    writeBytes(item.path, Bytes(1000, 'x'));
    log.reason.clear();
    player.replaceCurrentItem(item);
    EXPECT_TRUE(spinUntil([&] { return !log.reason.isEmpty(); }));
    EXPECT_EQ(log.reason.count('\n'), 0) << log.reason.toStdString();

    player.replaceCurrentItem(itemOf(movieFile({})));
    EXPECT_TRUE(spinUntil([&] { return player.isReady(); }));
}

TEST(PlayerSound, KeepsVolumeMutingAndRate) {
    PlayedMovie movie(movieFile(plain));
    Player& player = movie.player();
    player.setVolume(1.5);
    EXPECT_EQ(player.volume(), 1);
    player.setMuted(true);
    player.setDefaultRate(2);
    EXPECT_EQ(player.rate(), 0);
    movie.playUntil([&] { return player.currentTime() >= CMTime(30, 30); });
    EXPECT_EQ(player.rate(), 2);
    player.setDefaultRate(0.5);
    EXPECT_EQ(player.rate(), 0.5);
    EXPECT_TRUE(movie.step(1));
    EXPECT_TRUE(player.isMuted());
}

} // namespace
} // namespace zelvra::test
