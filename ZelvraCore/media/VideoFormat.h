// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Orientation.h"
#include "ZelvraCore/records/PixelAspect.h"

namespace zelvra {

/// How the pictures of a video track are stored and meant to be shown. Plain values.
struct VideoFormat {
    int width = 0; ///< of the decoded picture, in its own pixels
    int height = 0;
    PixelAspect pixelAspect;
    Orientation orientation;

    bool operator==(const VideoFormat&) const = default;
};

/// The stored picture in square pixels, not yet turned: its height stays, its width is scaled by the pixels'
/// shape and rounded, at least 1.
Size naturalSize(const VideoFormat& format);

/// The shape as given if it is plausible, else square: a side of zero, or a ratio beyond 1:8 or 8:1, is a
/// writer's fault or an attack.
PixelAspect plausibleAspect(int horizontal, int vertical);

/// The matrix coefficients (ISO/IEC 23091-2) by which a picture is read: the stated ones if they are a plain
/// matrix, else the usual guess, BT.709 for pictures wider than 1279 or higher than 576 samples and
/// BT.601 below. Constant luminance BT.2020 is read as the ordinary kind. Sizes as stored, before turning.
int matrixOrGuess(int stated, int width, int height);

} // namespace zelvra
