// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/NumberedPicture.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace zelvra::test {
namespace {

constexpr int columns = 16;
constexpr int rows = 9;
constexpr int numberRow = 0;
constexpr int complementRow = 1;
constexpr int markerRow = 2;
constexpr int firstMotionRow = 3;

constexpr std::uint8_t black = 16;
constexpr std::uint8_t white = 235;
constexpr std::uint8_t dark = 60;

constexpr double scrollPerFrame = 3.0 / 640;
constexpr double minContrast = 60;
constexpr double markerThreshold = 125;

/// Random greys, smoothed so that an encoder predicts them by their motion.
std::vector<std::uint8_t> makeTexture(int width, int height) {
    std::mt19937 random(7);
    std::vector<int> values(static_cast<std::size_t>(width) * height);
    std::generate(values.begin(), values.end(), [&] { return 80 + static_cast<int>(random() % 90); });
    const auto at = [&](int x, int y) {
        return values[static_cast<std::size_t>(y % height) * width + x % width];
    };
    std::vector<int> smoothed(values.size());
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                smoothed[static_cast<std::size_t>(y) * width + x] =
                    (at(x, y) + at(x + 1, y) + at(x, y + 1) + at(x + 2, y) + 2) / 4;
            }
        }
        values.swap(smoothed);
    }
    return {values.begin(), values.end()};
}

/// Mean of the inner part of a cell, because coding and scaling blur its edges into its neighbours.
double cellMean(const std::uint8_t* luma, int width, int height, std::size_t stride, int row, int column) {
    const auto inner = [](int index, int size, int cells, double part) {
        return static_cast<int>((index + part) * size / cells);
    };
    const int left = inner(column, width, columns, 0.3);
    const int right = std::max(left + 1, inner(column, width, columns, 0.7));
    const int top = inner(row, height, rows, 0.3);
    const int bottom = std::max(top + 1, inner(row, height, rows, 0.7));
    double sum = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            sum += luma[static_cast<std::size_t>(y) * stride + x];
        }
    }
    return sum / ((right - left) * (bottom - top));
}

} // namespace

NumberedPictures::NumberedPictures(int width, int height, bool interlaced)
    : width_(width),
      height_(height),
      interlaced_(interlaced),
      textureWidth_(width * 2),
      texture_(makeTexture(width * 2, height)) {}

std::uint8_t NumberedPictures::motionLuma(int x, int y, double moment) const {
    const double ballSize = width_ / 16.0;
    const double ballX = std::fmod(moment * width_ * 11 / 640, width_ - ballSize);
    const double ballY = height_ * (0.5 + 0.22 * std::sin(moment / 9));
    if (x >= ballX && x < ballX + ballSize && y >= ballY && y < ballY + ballSize) {
        return white;
    }
    const int scroll = static_cast<int>(moment * std::max(1.0, width_ * scrollPerFrame));
    return texture_[static_cast<std::size_t>(y) * textureWidth_ + (x + scroll) % textureWidth_];
}

std::string NumberedPictures::yuv420(int number) const {
    std::string picture;
    picture.reserve(static_cast<std::size_t>(width_) * height_ * 3 / 2);
    for (int y = 0; y < height_; ++y) {
        const int row = y * rows / height_;
        const double moment = number + (interlaced_ && y % 2 == 1 ? 0.5 : 0.0);
        for (int x = 0; x < width_; ++x) {
            const bool bit = (number >> (x * columns / width_) & 1) != 0;
            const std::uint8_t luma = row == numberRow       ? (bit ? white : black)
                                      : row == complementRow ? (bit ? black : white)
                                      : row == markerRow     ? dark
                                                             : motionLuma(x, y, moment);
            picture.push_back(static_cast<char>(luma));
        }
    }
    const int chromaWidth = (width_ + 1) / 2;
    const int chromaHeight = (height_ + 1) / 2;
    const int greyLines = chromaHeight * firstMotionRow / rows;
    for (const int hue : {(90 + number) % 160 + 48, 207 - (number + 30) % 160}) {
        picture.append(static_cast<std::size_t>(greyLines) * chromaWidth, static_cast<char>(128));
        picture.append(static_cast<std::size_t>(chromaHeight - greyLines) * chromaWidth,
                       static_cast<char>(hue));
    }
    return picture;
}

PictureReading readPicture(const std::uint8_t* luma, int width, int height, std::size_t stride) {
    PictureReading reading{.number = 0, .marker = {}};
    for (int column = 0; column < columns; ++column) {
        const double bit = cellMean(luma, width, height, stride, numberRow, column);
        const double complement = cellMean(luma, width, height, stride, complementRow, column);
        if (std::abs(bit - complement) < minContrast) {
            return {};
        }
        *reading.number |= bit > complement ? 1 << column : 0;
        if (cellMean(luma, width, height, stride, markerRow, column) > markerThreshold) {
            reading.marker = column;
        }
    }
    return reading;
}

Highlight markerHighlight(int marker, CMTime at, CMTime duration, Size picture) {
    // A circle whose stroke is as wide as its diameter is a disc of twice its radius.
    const double discRadius = 0.45 * std::min(picture.width / columns, picture.height / rows);
    const Point centre{(marker + 0.5) / columns, (markerRow + 0.5) / rows};
    return {.id = Uuid::random(),
            .timestamp = at,
            .duration = duration,
            .shape = {.id = Uuid::random(),
                      .kind = HighlightShapeKind::circle,
                      .p1 = centre,
                      .p2 = {centre.x + discRadius / 2 / picture.width, centre.y},
                      .strokeColor = {1, 1, 1, 1},
                      .strokeWidthRatio = discRadius / picture.height}};
}

} // namespace zelvra::test
