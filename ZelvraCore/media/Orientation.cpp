// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/Orientation.h"

#include <initializer_list>
#include <limits>

namespace zelvra {

namespace {

/// The linear part of a transform that only turns and mirrors.
struct Turn {
    int a = 1, b = 0, c = 0, d = 1;
};

Turn turnOf(Orientation orientation) {
    Turn turn;
    turn.a = orientation.mirrored ? -1 : 1;
    for (int quarter = 0; quarter < orientation.quarterTurns; ++quarter) {
        turn = {-turn.b, turn.a, -turn.d, turn.c};
    }
    return turn;
}

} // namespace

bool Orientation::startsAtRight() const {
    const Turn turn = turnOf(*this);
    return turn.a < 0 || turn.b < 0;
}

bool Orientation::startsAtBottom() const {
    const Turn turn = turnOf(*this);
    return turn.c < 0 || turn.d < 0;
}

Orientation orientationOf(const AffineTransform& matrix) {
    Orientation nearest;
    double greatest = -std::numeric_limits<double>::infinity();
    for (const bool mirrored : {false, true}) {
        for (int quarterTurns = 0; quarterTurns < 4; ++quarterTurns) {
            const Turn turn = turnOf({mirrored, quarterTurns});
            const double likeness =
                matrix.a * turn.a + matrix.b * turn.b + matrix.c * turn.c + matrix.d * turn.d;
            if (likeness > greatest) {
                greatest = likeness;
                nearest = {mirrored, quarterTurns};
            }
        }
    }
    return nearest;
}

AffineTransform transformOf(Orientation orientation, Size size) {
    const Turn turn = turnOf(orientation);
    const auto shift = [&](int alongX, int alongY) {
        return (alongX < 0 ? size.width : 0) + (alongY < 0 ? size.height : 0);
    };
    return {static_cast<double>(turn.a), static_cast<double>(turn.b), static_cast<double>(turn.c),
            static_cast<double>(turn.d), shift(turn.a, turn.c),       shift(turn.b, turn.d)};
}

PixelWalk::PixelWalk(Orientation orientation, int storedWidth, int storedHeight, std::ptrdiff_t stride,
                     std::ptrdiff_t sampleBytes)
    : width(orientation.swapsSides() ? storedHeight : storedWidth),
      height(orientation.swapsSides() ? storedWidth : storedHeight) {
    const Turn turn = turnOf(orientation);
    // The inverse of a turn is its transpose.
    alongRow = turn.a * sampleBytes + turn.c * stride;
    alongColumn = turn.b * sampleBytes + turn.d * stride;
    origin = (orientation.startsAtRight() ? (storedWidth - 1) * sampleBytes : 0) +
             (orientation.startsAtBottom() ? (storedHeight - 1) * stride : 0);
}

} // namespace zelvra
