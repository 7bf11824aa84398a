// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FrameGrab.h"
#include "tests/ZelvraApp/player/PlayedMovie.h"
#include "tests/support/Files.h"

#include <QImage>
#include <cstdlib>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

/// A small grey picture: decoders and scalers may differ by a shade.
QImage gist(const QImage& picture) {
    return picture.convertToFormat(QImage::Format_RGB32)
        .scaled({64, 64}, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_Grayscale8);
}

QImage grabbed(PlayedMovie& movie, const CMTime& time) {
    const Image image = extractFrame(movie.asset(), time);
    return gist(QImage(image.raster().rgba.data(), image.width(), image.height(),
                       qsizetype{4} * image.width(), QImage::Format_RGBX8888));
}

double distance(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
        }
    }
    return sum / (a.width() * a.height());
}

/// The picture on screen is the one that is grabbed at the current time: no neighbour is (much) more similar.
void expectGrabbedFrame(PlayedMovie& movie) {
    const FrameIndex& frames = movie.frames();
    const CMTime time = movie.player().currentTime();
    const QImage shown = gist(movie.pictureOnScreen());
    const double difference = distance(shown, grabbed(movie, time));
    for (const auto& neighbour : {frames.previous(time), frames.next(time)}) {
        if (neighbour) {
            constexpr double noise = 0.15; // of pictures without motion
            EXPECT_LT(difference, distance(shown, grabbed(movie, neighbour->time)) + noise) << time.seconds();
        }
    }
    constexpr double otherConversion = 4;
    EXPECT_LT(difference, otherConversion) << time.seconds();
}

class RealMovie : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(RealMovie, ShowsTheFramesThatTheEngineGrabs) {
    PlayedMovie movie(GetParam());
    const FrameIndex& frames = movie.frames();
    expectGrabbedFrame(movie);
    EXPECT_TRUE(movie.seek(frames.frame(frames.count() / 2).time));
    expectGrabbedFrame(movie);
    EXPECT_TRUE(movie.step(1));
    expectGrabbedFrame(movie);
    EXPECT_TRUE(movie.seek(frames.last().time));
    expectGrabbedFrame(movie);
}

std::vector<std::filesystem::path> movies() {
    auto files = sharedMovies();
    std::erase_if(files, [](const auto& file) {
        const std::string name = file.filename();
        // One has no pictures, one has pictures in another order than their times.
        const bool unfit = name.starts_with("track-52") || name.starts_with("phone-29");
        constexpr std::uintmax_t quicklyDone = 1'000'000; // bytes
        const bool slow =
            file_size(file) > quicklyDone && !name.starts_with("track-48"); // of two picture tracks
        return unfit || slow || file.extension() == ".md" || name.starts_with("broken");
    });
    return files;
}

INSTANTIATE_TEST_SUITE_P(Shared, RealMovie, testing::ValuesIn(movies()));
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RealMovie);

} // namespace
} // namespace zelvra::test
