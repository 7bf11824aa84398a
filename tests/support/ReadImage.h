// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"
#include "tests/support/NumberedPicture.h"

namespace zelvra::test {

/// The number that a grabbed picture carries, read from its raster.
inline std::optional<int> numberIn(const Image& image) {
    std::vector<std::uint8_t> greys;
    for (std::size_t pixel = 0; pixel < image.raster().rgba.size(); pixel += 4) {
        greys.push_back(image.raster().rgba[pixel + 1]);
    }
    const auto width = static_cast<std::size_t>(image.width());
    return readPicture(greys.data(), image.width(), image.height(), width).number;
}

} // namespace zelvra::test
