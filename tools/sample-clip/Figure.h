// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Camera.h"
#include "tools/sample-clip/Canvas.h"
#include "tools/sample-clip/Game.h"

namespace zelvra::sample {

/// The look of a player, independent of what he does.
struct Looks {
    Colour jersey, trim, skin, hair, shoes;
    int number = 0;
    double height = 1; ///< times 1.95 m
};
Looks looksOf(int player);

/// Draws a player: a skeleton posed for his current action, its hands at the ball if he has it, covered with
/// limbs.
void drawPlayer(cairo_t* cr, const Camera& camera, const PlayerState& state, const Looks& looks, Vec ball);

/// Draws the shadow and the dim reflection on the polished floor, to be drawn before all players.
void drawPlayerOnFloor(cairo_t* cr, const Camera& camera, const PlayerState& state, const Looks& looks,
                       Vec ball);

void drawBall(cairo_t* cr, const Camera& camera, const BallState& ball);
void drawBallShadow(cairo_t* cr, const Camera& camera, const BallState& ball);

} // namespace zelvra::sample
