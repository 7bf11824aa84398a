// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Geometry.h"

#include <cstddef>
#include <cstdint>

namespace zelvra {

/// How a stored picture is turned to stand upright: mirrored left to right or not, then turned clockwise by
/// quarter turns. Display matrices of cameras are these eight, give or take a shift and a scale; any other
/// angle is shown as the nearest of them, as players do. Pure values; pixels are moved by `PixelWalk`.
struct Orientation {
    bool mirrored = false;
    int quarterTurns = 0; ///< 0 to 3, clockwise

    bool operator==(const Orientation&) const = default;
    bool isUpright() const { return !mirrored && quarterTurns == 0; }
    bool swapsSides() const { return quarterTurns % 2 != 0; }
    /// Whether the stored picture is read from its right side, and from its bottom, to stand upright.
    bool startsAtRight() const;
    bool startsAtBottom() const;
};

/// The orientation nearest to the linear part of `matrix`. Shift and scale do not matter.
Orientation orientationOf(const AffineTransform& matrix);

/// The transform that turns a picture of `size` so that its upper left corner is at (0, 0) again; the
/// identity, exactly, for an upright one.
AffineTransform transformOf(Orientation orientation, Size size);

/// A walk over the samples of a stored plane in the order in which they stand upright: the sample of upright
/// column x and row y is at `origin` + x * `alongRow` + y * `alongColumn` bytes from the plane's start.
struct PixelWalk {
    int width = 0; ///< upright, in samples
    int height = 0;
    std::ptrdiff_t origin = 0;
    std::ptrdiff_t alongRow = 0;
    std::ptrdiff_t alongColumn = 0;

    /// Over a plane of `storedWidth` by `storedHeight` samples of `sampleBytes` bytes, its rows `stride`
    /// bytes apart.
    PixelWalk(Orientation orientation, int storedWidth, int storedHeight, std::ptrdiff_t stride,
              std::ptrdiff_t sampleBytes);
};

} // namespace zelvra
