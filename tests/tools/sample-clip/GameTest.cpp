// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Game.h"

#include <gtest/gtest.h>

namespace zelvra::sample {
namespace {

constexpr double frame = 1.0 / 30;
constexpr int frames = static_cast<int>(clipSeconds * 30) - 1;

TEST(Game, MovesPlayersLikePeople) {
    const Game game;
    for (int player = 0; player < playerCount; ++player) {
        for (int i = 0; i < frames; ++i) {
            const double time = i * frame;
            const Vec here = game.player(player, time).place;
            const Vec next = game.player(player, time + frame).place;
            EXPECT_LT(std::hypot(next.x - here.x, next.y - here.y) / frame, 8.5) << player << " at " << time;
            EXPECT_TRUE(here.x > 0.5 && here.x < courtLength - 0.5 && here.y > 0.5 &&
                        here.y < courtWidth - 0.5)
                << player << " leaves the court at " << time;
            EXPECT_NEAR(length(game.player(player, time).facing), 1, 1e-9);
        }
    }
}

TEST(Game, MovesTheBallWithoutJumps) {
    const Game game;
    for (int i = 0; i < frames; ++i) {
        const double time = i * frame;
        const Vec here = game.ball(time).place;
        const Vec next = game.ball(time + frame).place;
        EXPECT_LT(length(next - here) / frame, 20) << time;
        EXPECT_GT(here.z, ballRadius - 0.01) << time;
    }
}

TEST(Game, CountsABasketWhenTheBallIsInTheHoop) {
    const Game game;
    int baskets = 0;
    for (const GameEvent& event : game.events()) {
        if (event.kind == GameEvent::Kind::basket) {
            const Vec hoop = event.homeTeam ? rightHoop : leftHoop;
            EXPECT_LT(length(game.ball(event.time).place - hoop), 0.05);
            EXPECT_EQ(game.points(event.homeTeam, event.time) -
                          game.points(event.homeTeam, event.time - frame),
                      event.points);
            ++baskets;
        }
    }
    EXPECT_EQ(baskets, 2);
}

} // namespace
} // namespace zelvra::sample
