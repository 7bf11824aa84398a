// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Camera.h"
#include "tools/sample-clip/Canvas.h"
#include "tools/sample-clip/Game.h"

namespace zelvra::sample {

/// How a player looks, whatever he does.
struct Looks {
    Colour jersey, trim, skin, hair, shoes;
    int number = 0;
    double height = 1; ///< times 1.95 m
};
Looks looksOf(int player);

/// Draws a player: a skeleton posed by what he does, its hands at the ball where he has it, clad in limbs.
void drawPlayer(cairo_t* cr, const Camera& camera, const PlayerState& state, const Looks& looks, Vec ball);

/// The shadow and the dim reflection on the polished floor, below everybody.
void drawPlayerOnFloor(cairo_t* cr, const Camera& camera, const PlayerState& state, const Looks& looks,
                       Vec ball);

void drawBall(cairo_t* cr, const Camera& camera, const BallState& ball);
void drawBallShadow(cairo_t* cr, const Camera& camera, const BallState& ball);

} // namespace zelvra::sample
