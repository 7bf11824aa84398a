// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/VideoFormat.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zelvra {

Size naturalSize(const VideoFormat& format) {
    const double ratio = static_cast<double>(format.pixelAspect.horizontal) / format.pixelAspect.vertical;
    return {std::max(1.0, std::round(format.width * ratio)), static_cast<double>(format.height)};
}

PixelAspect plausibleAspect(int horizontal, int vertical) {
    constexpr std::int64_t limit = 8;
    const bool plausible =
        horizontal > 0 && vertical > 0 && horizontal <= limit * vertical && vertical <= limit * horizontal;
    return plausible ? PixelAspect{horizontal, vertical} : PixelAspect{};
}

int matrixOrGuess(int stated, int width, int height) {
    constexpr int bt709 = 1;
    constexpr int bt601 = 6;
    switch (stated) {
    case 0: // R'G'B'
    case bt709:
    case 4: // FCC
    case 5:
    case bt601:
    case 7: // SMPTE ST 240
    case 8: // YCgCo
    case 9: return stated;
    case 10: return 9;
    default: return width >= 1280 || height > 576 ? bt709 : bt601;
    }
}

} // namespace zelvra
