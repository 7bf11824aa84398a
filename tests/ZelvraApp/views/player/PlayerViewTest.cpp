// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/PlayerSurface.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/window/WindowFixture.h"

#include <QTransform>

#include <ostream>

namespace zelvra::test {

namespace {

const NumberedMovie plain{.frames = 90};

class PlayerArea : public WindowFixture {
protected:
    Player& player() { return state().player(); }

    PlayerSurface& surface() { return dynamic_cast<PlayerSurface&>(item("playerSurface")); }

    /// The number of the movie's picture that the window shows.
    std::optional<int> shown() {
        PlayerSurface& shownIn = surface();
        const QImage picture = window()
                                   .grabWindow()
                                   .copy(shownIn.mapRectToScene(shownIn.pictureRect()).toRect())
                                   .convertToFormat(QImage::Format_Grayscale8);
        return readPicture(picture.constBits(), picture.width(), picture.height(),
                           static_cast<std::size_t>(picture.bytesPerLine()))
            .number;
    }
    /// The controls may lie over the picture: they leave the number, at its top, alone.
    bool comesToShow(int number) {
        return comesTrue([&] { return shown() == number; });
    }
    /// Brings the controls up.
    void showControls() {
        hover(item("playerSurface"), QPointF(60, 60));
        hover(item("playerSurface"), QPointF(64, 64));
        EXPECT_TRUE(comesTrue([&] { return isShown("playButton"); }));
    }
};

struct Kind {
    std::string name;
    NumberedMovie movie;
};
void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

class PlayerPictures : public PlayerArea, public testing::WithParamInterface<Kind> {};

} // namespace

TEST_P(PlayerPictures, AreUprightAndInTheirShape) {
    const NumberedMovie& movie = GetParam().movie;
    open(movieFile(movie));
    EXPECT_TRUE(comesToShow(0));
    state().seek(movie.timeOf(10));
    EXPECT_TRUE(comesToShow(10));
    state().player().play();
    EXPECT_TRUE(comesTrue([&] { return shown() > 30; }));
    state().player().pause();
    state().seek(movie.timeOf(3));
    EXPECT_TRUE(comesToShow(3));
    window().resize(1000, 700);
    EXPECT_TRUE(comesToShow(3));
    const PlayerSurface& shownIn = surface();
    const QRectF rect = shownIn.pictureRect();
    EXPECT_NEAR(rect.width() / rect.height(), static_cast<double>(movie.width) / movie.height, 0.01);
    EXPECT_NEAR(rect.center().x(), shownIn.width() / 2, 1);
    EXPECT_NEAR(rect.center().y(), shownIn.height() / 2, 1);
}

INSTANTIATE_TEST_SUITE_P(Kinds, PlayerPictures,
                         testing::Values(Kind{"plain", plain},
                                         Kind{"portrait", {.width = 180, .height = 320}},
                                         Kind{"quarter turn", {.orientation = Orientation::quarterTurn}},
                                         Kind{"half turn", {.orientation = Orientation::halfTurn}},
                                         Kind{"mirrored", {.orientation = Orientation::mirrored}},
                                         Kind{"HEVC", {.codec = MovieCodec::hevc}}));

TEST_F(PlayerArea, KeysStepAndShuttle) {
    open(movieFile(plain));
    key(Qt::Key_Right);
    EXPECT_TRUE(comesToShow(1));
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(comesToShow(11));
    key(Qt::Key_Left);
    EXPECT_TRUE(comesToShow(10));
    key(Qt::Key_End);
    EXPECT_TRUE(comesToShow(89));
    key(Qt::Key_Home);
    EXPECT_TRUE(comesToShow(0));

    key(Qt::Key_L);
    EXPECT_EQ(player().rate(), 1);
    key(Qt::Key_L);
    EXPECT_EQ(player().rate(), 2);
    EXPECT_TRUE(comesTrue([&] { return player().currentTime() > CMTime(1, 1); }));
    key(Qt::Key_K);
    EXPECT_EQ(player().rate(), 0);
    key(Qt::Key_J);
    EXPECT_TRUE(comesTrue([&] { return player().currentTime() < CMTime(1, 2); }));
    key(Qt::Key_Space);
    EXPECT_EQ(player().rate(), 0);
    key(Qt::Key_Space);
    EXPECT_EQ(player().rate(), 1); // not the shuttle's
    key(Qt::Key_Space);
    EXPECT_EQ(player().rate(), 0);
}

TEST_F(PlayerArea, ControlsAppearUnderThePointerAndPlay) {
    open(movieFile(plain));
    showControls();
    EXPECT_EQ(textOf("elapsedText"), "00:00.00");
    EXPECT_EQ(textOf("remainingText"), "-00:03.00");
    click("playButton");
    EXPECT_GT(player().rate(), 0);
    click("playButton");
    EXPECT_EQ(player().rate(), 0);

    click("speedButton");
    click("speed:0.5");
    EXPECT_EQ(textOf("speedButton"), "0.5×");
    click("playButton");
    EXPECT_EQ(player().rate(), 0.5);
    click("playButton");

    click("muteButton");
    EXPECT_TRUE(player().isMuted());
    QQuickItem& volume = item("volumeSlider");
    click(volume, QPointF(volume.width() / 2, volume.height() / 2));
    EXPECT_NEAR(player().volume(), 0.5, 0.1);
    EXPECT_FALSE(player().isMuted());
}

TEST_F(PlayerArea, TheScrubberShowsTheExactFrameAtRest) {
    open(movieFile(plain));
    showControls();
    QQuickItem& scrubber = item("scrubber");
    hover(scrubber, QPointF(scrubber.width() / 2, 10));
    EXPECT_TRUE(comesTrue([&] { return textOf("hoverTime") == "00:01.50"; }))
        << textOf("hoverTime").toStdString();
    drag(scrubber, {5, 10}, {scrubber.width() / 2, 10});
    EXPECT_TRUE(comesToShow(45));
    EXPECT_EQ(textOf("elapsedText"), "00:01.50");
    key(Qt::Key_Space);
    drag(scrubber, {scrubber.width() / 2, 10}, {scrubber.width() / 3, 10});
    EXPECT_GT(player().rate(), 0); // plays on from there
}

TEST_F(PlayerArea, AClickOnThePicturePlaysAndTwoFillTheScreen) {
    open(movieFile(plain));
    QQuickItem& surface = item("playerSurface");
    const QPointF at(surface.width() / 2, surface.height() / 4);
    click(surface, at);
    EXPECT_TRUE(comesTrue([&] { return player().rate() > 0; }));
    key(Qt::Key_Space);
    showControls();
    click("fullScreenButton");
    EXPECT_TRUE(comesTrue([&] { return window().visibility() == QWindow::FullScreen; }));
    EXPECT_TRUE(comesTrue([&] { return item("playerSurface").height() == window().height(); }));
    EXPECT_TRUE(comesTrue([&] { return shown().has_value(); }));
    key(Qt::Key_Escape);
    EXPECT_TRUE(comesTrue([&] { return window().visibility() == QWindow::Windowed; }));
}

} // namespace zelvra::test
