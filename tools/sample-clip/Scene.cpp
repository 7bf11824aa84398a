// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Scene.h"

#include "tools/sample-clip/Figure.h"

#include <cstdio>
#include <functional>

namespace zelvra::sample {
namespace {

/// Excitement of the crowd after each basket: higher and longer for the home team.
double excitement(const Game& game, double time) {
    double most = 0;
    for (const GameEvent& event : game.events()) {
        if (event.kind == GameEvent::Kind::basket && event.homeTeam) {
            most = std::max(most, smoothStep(event.time, event.time + 0.5, time) *
                                      (1 - smoothStep(event.time + 3, event.time + 4.2, time)));
        }
    }
    return most;
}

/// Progress of the net's swing at that end after a basket; 0 at rest.
double swish(const Game& game, bool right, double time) {
    for (const GameEvent& event : game.events()) {
        const double since = time - event.time;
        if (event.kind == GameEvent::Kind::basket && event.homeTeam == right && since >= 0 && since < 0.7) {
            return since / 0.7;
        }
    }
    return 0;
}

void drawTeam(cairo_t* cr, double x, const char* name, Colour colour, int points) {
    roundedRectangle(cr, x, 56, 10, 48, 3);
    setColour(cr, colour);
    cairo_fill(cr);
    drawText(cr, name, x + 24, 91, 32, {1, 1, 1});
    drawText(cr, std::to_string(points), x + 188, 93, 38, {1, 1, 1}, Align::right);
}

void drawScoreboard(cairo_t* cr, const Game& game, double time) {
    roundedRectangle(cr, 56, 40, 776, 80, 14);
    setColour(cr, {0.05, 0.07, 0.12, 0.92});
    cairo_fill(cr);
    drawTeam(cr, 78, "HBR", {0.95, 0.95, 0.97}, 68 + game.points(true, time));
    drawTeam(cr, 290, "NTH", {0.80, 0.10, 0.13}, 69 + game.points(false, time));

    roundedRectangle(cr, 502, 40, 330, 80, 14);
    setColour(cr, {0.13, 0.20, 0.36, 0.95});
    cairo_fill(cr);
    const double left = std::max(0.0, 54.2 - time);
    char clock[16];
    std::snprintf(clock, sizeof clock, "0:%04.1f", left);
    drawText(cr, "Q4", 526, 91, 28, {0.62, 0.72, 0.90});
    drawText(cr, clock, 722, 92, 34, {1, 1, 1}, Align::right);
    // The shot clock restarts when the other team gets the ball.
    const double possession = time < 13.45  ? 21.4 - time
                              : time < 21.1 ? 24 - (time - 13.45)
                                            : 24 - (time - 21.1);
    drawText(cr, std::to_string(static_cast<int>(std::ceil(possession))), 806, 92, 34, {1, 0.70, 0.20},
             Align::right);
}

} // namespace

Camera Scene::camera(double time) const {
    const double focus = game_.focus(time);
    const double pan = std::atan2(focus - Camera::place.x, 9.0 - Camera::place.y) * 0.93;
    const double zoom = 2750 + 250 * std::pow(std::abs(focus - courtLength / 2) / 9, 2);
    return {width, height, pan, 0.333, zoom};
}

void Scene::draw(double time, Pixels& pixels) const {
    pixels.resize(std::size_t{width} * height);
    const Camera camera = this->camera(time);
    hall_.paint(pixels.data(), camera, time, excitement(game_, time));
    const Surface surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels.data()),
                                                              CAIRO_FORMAT_RGB24, width, height, width * 4));
    const Context context(cairo_create(surface.get()));
    cairo_t* cr = context.get();

    const BallState ball = game_.ball(time);
    struct Drawn {
        double depth;
        std::function<void()> draw;
    };
    std::vector<Drawn> drawn;
    for (int player = 0; player < playerCount; ++player) {
        const PlayerState state = game_.player(player, time);
        const Looks looks = looksOf(player);
        drawPlayerOnFloor(cr, camera, state, looks, ball.place);
        drawn.push_back({state.place.y, [=, &camera] { drawPlayer(cr, camera, state, looks, ball.place); }});
    }
    drawBallShadow(cr, camera, ball);
    drawn.push_back({ball.place.y - 0.05, [=, &camera] { drawBall(cr, camera, ball); }});
    for (const bool right : {false, true}) {
        const double through = swish(game_, right, time);
        drawn.push_back({leftHoop.y + 0.1, [=, &camera] { drawBasket(cr, camera, right, through); }});
    }
    std::sort(drawn.begin(), drawn.end(), [](const Drawn& a, const Drawn& b) { return a.depth > b.depth; });
    for (const Drawn& item : drawn) {
        item.draw();
    }
    drawScoreboard(cr, game_, time);
    cairo_surface_flush(surface.get());
}

} // namespace zelvra::sample
