// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/Thumbnails.h"

#include "tests/support/NumberedMovie.h"
#include "tests/support/ReadImage.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

std::vector<std::optional<int>> numbersOf(const NumberedMovie& movie, int count, int height) {
    std::vector<std::optional<int>> numbers;
    makeThumbnails(Asset(movieFile(movie)), {count, height}, [&](std::size_t index, const Image& thumbnail) {
        EXPECT_EQ(index, numbers.size());
        EXPECT_EQ(thumbnail.height(), height);
        EXPECT_EQ(thumbnail.width(), height * movie.width / movie.height);
        numbers.push_back(numberIn(thumbnail));
    });
    return numbers;
}

TEST(Thumbnails, AreTheSyncFramesBeforeEachMiddle) {
    // Middles at frames 10, 30, 50, 70, 90 and 110 of 120.
    const std::vector<std::optional<int>> expected{0, 30, 45, 60, 90, 105};
    EXPECT_EQ(numbersOf({.frames = 120, .gop = 15}, 6, 90), expected);
    EXPECT_EQ(numbersOf({.frames = 120, .codec = MovieCodec::hevc, .gop = 15}, 6, 90), expected);
}

TEST(Thumbnails, AreUpright) {
    EXPECT_EQ(numbersOf({.orientation = Orientation::quarterTurn}, 2, 90),
              (std::vector<std::optional<int>>{0, 30}));
}

TEST(Thumbnails, EndWhenAskedTo) {
    std::stop_source source;
    int made = 0;
    makeThumbnails(
        Asset(movieFile({})), {10, 20},
        [&](std::size_t, const Image&) {
            ++made;
            source.request_stop();
        },
        source.get_token());
    EXPECT_EQ(made, 1);
    makeThumbnails(Asset(movieFile({})), {0, 20}, [](std::size_t, const Image&) { FAIL(); });
}

} // namespace
} // namespace zelvra::test
