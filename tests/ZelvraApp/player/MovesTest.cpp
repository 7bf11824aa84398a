// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SoftwarePicture.h"
#include "ZelvraCore/FrameGrab.h"
#include "tests/ZelvraApp/player/PlayedMovie.h"
#include "tests/support/NamedMovie.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/ReadImage.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace zelvra::test {
namespace {

/// A hand on a movie of numbered pictures, and every number that it sees.
class Hand {
public:
    explicit Hand(const std::filesystem::path& file) : movie_(file) {
        for (std::size_t i = 0; i < movie_.frames().count(); ++i) {
            numbers_.push_back(numberIn(extractFrame(movie_.asset(), movie_.frames().frame(i).time)).value());
        }
        QObject::connect(&player(), &Player::pictureChanged, &player(), [this] { look(); });
        player().setPeriodicTimeObservation(true);
        QObject::connect(&player(), &Player::periodicTime, &player(),
                         [this](const CMTime& time) { times_.push_back(time); });
    }

    Player& player() { return movie_.player(); }
    PlayedMovie& movie() { return movie_; }
    std::size_t count() const { return numbers_.size(); }
    int numberOf(std::size_t index) const { return numbers_[index]; }
    std::size_t index() { return movie_.frames().containing(player().currentTime())->index; }
    CMTime timeOf(std::size_t index) { return movie_.frames().frame(index).time; }

    std::optional<int> number() {
        const QImage grey = dynamic_cast<SoftwarePicture&>(player().picture())
                                .image()
                                .convertToFormat(QImage::Format_Grayscale8);
        return readPicture(grey.constBits(), grey.width(), grey.height(),
                           static_cast<std::size_t>(grey.bytesPerLine()))
            .number;
    }

    /// Whether the picture of the playhead comes to the screen.
    bool comesToRest() {
        return spinUntil([&] { return !player().isMoving() && number() == numberOf(index()); });
    }

    /// What has been seen and reported since the last call.
    std::vector<int> takeSeen() { return std::exchange(seen_, {}); }
    std::vector<CMTime> takeTimes() { return std::exchange(times_, {}); }

private:
    void look() {
        const auto shown = number();
        if (shown && (seen_.empty() || seen_.back() != *shown)) {
            seen_.push_back(*shown);
        }
    }

    PlayedMovie movie_;
    std::vector<int> numbers_;
    std::vector<int> seen_;
    std::vector<CMTime> times_;
};

/// Pictures may be drawn faster than a busy test looks, but never in another order, or others.
void expectOnTheWay(const std::vector<int>& seen, int from, const std::vector<int>& way) {
    std::size_t at = 0;
    for (const int number : seen) {
        if (number != from || at > 0) {
            const auto found = std::find(way.begin() + static_cast<std::ptrdiff_t>(at), way.end(), number);
            ASSERT_NE(found, way.end()) << testing::PrintToString(seen);
            at = static_cast<std::size_t>(found - way.begin()) + 1;
        }
    }
}

class PlayerMoves : public testing::TestWithParam<NamedMovie> {};

/// Moves as a hand makes them, one during the other. Each ends on its picture, and shows on the way only what
/// it may: steps the frames between, in order; playing backward only earlier ones.
TEST_P(PlayerMoves, AllEndOnTheirPictureAndShowNothingElse) {
    constexpr int moves = 250; // of each kind of movie: 2,000
    Hand hand(movieFile(GetParam().movie));
    std::mt19937 random(20);
    const auto upTo = [&](std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random);
    };
    const std::size_t last = hand.count() - 1;
    ASSERT_TRUE(hand.comesToRest());
    for (int move = 0; move < moves; ++move) {
        const std::size_t from = hand.index();
        const std::size_t to = upTo(last);
        const std::size_t kind = upTo(6);
        SCOPED_TRACE(testing::Message()
                     << "move " << move << ", kind " << kind << ", " << from << " to " << to);
        hand.takeSeen();
        hand.takeTimes();
        std::vector<QCoro::Task<bool>> tasks;
        if (kind == 0 || kind == 1) { // a burst of single steps
            const int step = kind == 0 ? -1 : 1;
            const std::size_t steps = 1 + upTo(5);
            for (std::size_t i = 0; i < steps; ++i) {
                tasks.push_back(hand.player().step(step));
            }
            ASSERT_TRUE(hand.comesToRest());
            std::vector<int> way;
            for (std::size_t at = from; at != hand.index(); at += static_cast<std::size_t>(step)) {
                way.push_back(hand.numberOf(at + static_cast<std::size_t>(step)));
            }
            expectOnTheWay(hand.takeSeen(), hand.numberOf(from), way);
        } else if (kind == 2) { // ten
            tasks.push_back(hand.player().step(to > from ? 10 : -10));
            ASSERT_TRUE(hand.comesToRest());
        } else if (kind == 3) { // overtaken seeks
            tasks.push_back(hand.player().seek(hand.timeOf(upTo(last))));
            tasks.push_back(hand.player().seek(hand.timeOf(to)));
            ASSERT_TRUE(hand.comesToRest());
            EXPECT_EQ(hand.index(), to);
            const auto times = hand.takeTimes();
            EXPECT_EQ(times.back(), hand.timeOf(to));
        } else if (kind == 4) { // a drag
            hand.player().scrub(hand.timeOf(upTo(last)));
            spinFor(static_cast<int>(upTo(30)));
            hand.player().scrub(hand.timeOf(to));
            EXPECT_EQ(hand.player().currentTime(), hand.timeOf(to));
            ASSERT_TRUE(hand.comesToRest());
            EXPECT_EQ(hand.index(), to);
        } else if (kind == 5) {
            hand.player().play();
            spinFor(static_cast<int>(upTo(120)));
            hand.player().pause();
            ASSERT_TRUE(hand.comesToRest());
        } else {
            hand.player().playBackward(1 + static_cast<double>(upTo(1)));
            spinFor(static_cast<int>(upTo(120)));
            if (upTo(1) == 0) { // turns round
                hand.player().play();
                spinFor(static_cast<int>(upTo(60)));
            } else {
                const std::vector<int> seen = hand.takeSeen();
                EXPECT_TRUE(std::ranges::is_sorted(seen, std::greater())) << testing::PrintToString(seen);
            }
            hand.player().pause();
            ASSERT_TRUE(hand.comesToRest());
        }
    }
}

CMTimeRange stretch(int from, int to) {
    return CMTimeRange::fromStartToEnd({from, 30}, {to, 30});
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PlayerMoves,
    testing::Values(
        NamedMovie{"plain", {.frames = 90, .sound = SoundCodec::aac}},
        NamedMovie{"one group", {.frames = 300, .gop = 300}},
        NamedMovie{"60", {.rate = 60, .frames = 180, .gop = 60}},
        NamedMovie{
            "variable",
            {.frames = 12, .frameTicks = {20, 20, 40, 1, 19, 300, 20, 21, 19, 20, 60, 20}, .timescale = 600}},
        NamedMovie{"trimmed", {.frames = 90, .shown = {stretch(17, 70)}}},
        NamedMovie{"two pieces", {.frames = 90, .shown = {stretch(5, 20), stretch(47, 80)}}},
        NamedMovie{"hevc open", {.frames = 90, .codec = MovieCodec::hevc, .gop = 15, .openGop = true}},
        NamedMovie{"vp9", {.frames = 90, .codec = MovieCodec::vp9, .container = "mp4"}}));

class PlayerPixels : public testing::TestWithParam<NamedMovie> {};

/// The film and the stills draw the same picture, to the pixel.
TEST_P(PlayerPixels, AreTheSameHoweverAPictureIsReached) {
    Hand hand(movieFile(GetParam().movie));
    hand.player().picture().setGreatestSize({237, 411});
    hand.player().play();
    ASSERT_TRUE(spinUntil([&] { return hand.index() > 10; }));
    hand.player().pause();
    ASSERT_TRUE(hand.comesToRest());
    const std::size_t at = hand.index();
    const QImage played = hand.movie().pictureOnScreen();
    const auto expectSame = [&](const char* way) {
        ASSERT_TRUE(hand.comesToRest());
        ASSERT_EQ(hand.index(), at);
        EXPECT_EQ(hand.movie().pictureOnScreen(), played) << way;
    };
    hand.movie().step(-1);
    hand.movie().step(1);
    expectSame("stepped");
    hand.movie().seek(hand.timeOf(2));
    hand.movie().seek(hand.timeOf(at));
    expectSame("sought");
    hand.player().scrub(hand.timeOf(0));
    hand.player().scrub(hand.timeOf(at));
    expectSame("dragged");
    hand.movie().step(3);
    hand.player().playBackward(0.5);
    ASSERT_TRUE(spinUntil([&] { return hand.index() <= at; }));
    hand.player().pause();
    hand.movie().seek(hand.timeOf(at));
    expectSame("played backward");
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PlayerPixels,
    testing::Values(NamedMovie{"plain", {}}, NamedMovie{"hevc", {.codec = MovieCodec::hevc}},
                    NamedMovie{"10 bits", {.codec = MovieCodec::hevc, .pixelFormat = "yuv420p10le"}},
                    NamedMovie{"4:2:2", {.codec = MovieCodec::proRes, .pixelFormat = "yuv422p10le"}},
                    NamedMovie{"long pixels", {.pixelAspect = "4/3"}},
                    NamedMovie{"BT.709, full range", {.colorTags = "colorspace=bt709:range=pc"}}));

} // namespace
} // namespace zelvra::test
