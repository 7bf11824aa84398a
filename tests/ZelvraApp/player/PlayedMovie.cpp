// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/player/PlayedMovie.h"

#include "ZelvraApp/player/SoftwarePicture.h"
#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/SourceProbe.h"
#include "tests/support/ReadImage.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QTimer>
#include <QTransform>
#include <stdexcept>

namespace zelvra::test {

bool spinUntil(const std::function<bool()>& done) {
    constexpr int timeout = 10'000; // ms
    QElapsedTimer waited;
    waited.start();
    while (!done() && waited.elapsed() < timeout) {
        spinFor(5);
    }
    return done();
}

void spinFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

PlayerItem itemOf(const std::filesystem::path& movie) {
    auto asset = std::make_shared<const Asset>(movie);
    SourceInfo info = loadSourceInfo(*asset);
    return {movie, std::move(asset), info, {}, {}};
}

PlayedMovie::PlayedMovie(const std::filesystem::path& movie) {
    player_.replaceCurrentItem(itemOf(movie));
    if (!spinUntil([this] { return player_.isReady(); })) {
        throw std::runtime_error("the player did not load " + movie.string());
    }
}

void PlayedMovie::playUntil(const std::function<bool()>& done) {
    player_.play();
    if (!spinUntil(done)) {
        throw std::runtime_error("the player did not play on");
    }
}

QImage PlayedMovie::pictureOnScreen() {
    auto& picture = dynamic_cast<SoftwarePicture&>(player_.picture());
    constexpr int lastQueuedPicture = 45; // ms that it may take to appear after a pause
    spinFor(lastQueuedPicture);
    spinUntil([&] { return !picture.isDrawing(); });
    const AffineTransform& turn = player_.currentItem()->info.preferredTransform;
    return picture.image().transformed(QTransform(turn.a, turn.b, turn.c, turn.d, 0, 0));
}

std::optional<int> PlayedMovie::numberOnScreen() {
    const QImage grey = pictureOnScreen().convertToFormat(QImage::Format_Grayscale8);
    return readPicture(grey.constBits(), grey.width(), grey.height(),
                       static_cast<std::size_t>(grey.bytesPerLine()))
        .number;
}

std::optional<int> PlayedMovie::numberGrabbed() {
    return numberIn(extractFrame(asset(), player_.currentTime()));
}

} // namespace zelvra::test
