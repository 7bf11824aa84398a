// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Game.h"

#include <numbers>
#include <span>

namespace zelvra::sample {
namespace {

constexpr double tracksPerSecond = 120;
constexpr double gravity = 9.81;

struct Waypoint {
    double time, x, y;
};

/// The position on a smooth curve through all waypoints. It rests between two waypoints at the same place.
Vec along(std::span<const Waypoint> path, double time) {
    if (time <= path.front().time) {
        return {path.front().x, path.front().y, 0};
    }
    if (time >= path.back().time) {
        return {path.back().x, path.back().y, 0};
    }
    std::size_t i = 0;
    while (path[i + 1].time < time) {
        ++i;
    }
    const auto place = [&](std::size_t k) { return Vec{path[k].x, path[k].y, 0}; };
    const auto pace = [&](std::size_t k) {
        if (k == 0 || k + 1 == path.size() || length(place(k) - place(k - 1)) < 0.05 ||
            length(place(k + 1) - place(k)) < 0.05) {
            return Vec{};
        }
        return (place(k + 1) - place(k - 1)) * (1 / (path[k + 1].time - path[k - 1].time));
    };
    const double span = path[i + 1].time - path[i].time;
    const double u = (time - path[i].time) / span;
    const double v = 1 - u;
    return place(i) * (v * v * (1 + 2 * u)) + pace(i) * (span * u * v * v) +
           place(i + 1) * (u * u * (3 - 2 * u)) - pace(i + 1) * (span * u * u * v);
}

/// The white team attacks on the right until 12.3 s, then runs back.
const std::array<std::vector<Waypoint>, 5> whitePaths{{
    {{0, 8.6, 6.6},
     {2.2, 13.4, 6.2},
     {4.2, 17.4, 7.2},
     {7.0, 17.6, 7.4},
     {8.0, 18.5, 9.9},
     {9.0, 20.9, 10.3},
     {9.8, 22.3, 9.5},
     {10.8, 22.9, 9.2},
     {12.6, 22.4, 9.0},
     {14, 19, 8.4},
     {16.6, 9.2, 8.2},
     {18.6, 3.9, 8.4},
     {19.6, 2.7, 8.2},
     {20.6, 2.9, 7.6},
     {22.2, 6.8, 6.2},
     {24, 11.6, 6.4}},
    {{0, 10.5, 2.7},
     {2.4, 16.2, 2.1},
     {4.2, 20.5, 2.6},
     {6.6, 20.6, 2.7},
     {9.2, 22.2, 1.9},
     {12.6, 22.2, 1.9},
     {14.2, 18.6, 3.2},
     {17.2, 8.9, 4.0},
     {19.4, 4.8, 5.0},
     {20.9, 2.4, 5.4},
     {21.8, 2.2, 5.6},
     {24, 8.2, 3.6}},
    {{0, 12.2, 12.6},
     {2.6, 18.6, 13.3},
     {4.8, 25.0, 13.9},
     {9.6, 25.1, 14.0},
     {10.3, 24.9, 13.7},
     {12.2, 24.9, 13.7},
     {13.4, 24.0, 13.0},
     {16.4, 15.2, 12.2},
     {19.4, 7.6, 11.2},
     {21.4, 6.4, 10.6},
     {24, 12.8, 11.8}},
    {{0, 13.6, 9.6},
     {2.4, 19.2, 11.2},
     {4.6, 22.4, 11.4},
     {6.2, 21.8, 11.0},
     {7.4, 18.9, 8.75},
     {8.8, 18.9, 8.75},
     {10.4, 23.8, 7.9},
     {12.2, 24.8, 8.2},
     {14.2, 21.5, 7.4},
     {17.4, 11.8, 6.6},
     {20, 6.4, 6.8},
     {22, 7.2, 8.2},
     {24, 12.9, 8.6}},
    {{0, 14.6, 5.4},
     {2.6, 21.4, 4.6},
     {5.0, 25.0, 5.0},
     {6.6, 25.1, 5.3},
     {8.2, 24.8, 4.6},
     {11.0, 24.9, 5.2},
     {12.4, 25.2, 6.4},
     {14.4, 21.8, 5.6},
     {18, 11.6, 5.4},
     {21, 6.6, 4.8},
     {24, 9.6, 5.2}},
}};

/// The red team's paths once it has the ball.
const std::array<std::vector<Waypoint>, 5> redPaths{{
    {{12.3, 23.9, 9.2},
     {13.4, 22.4, 6.2},
     {14.7, 19.8, 4.6},
     {16, 15.4, 4.6},
     {17.6, 9.9, 5.4},
     {19.2, 6.2, 6.4},
     {20.6, 4.8, 6.9},
     {22.2, 8.4, 7.4},
     {24, 14.2, 7.2}},
    {{12.3, 23.4, 3.6},
     {13.6, 21.2, 8.2},
     {15.2, 16.2, 11.6},
     {17.2, 8.6, 11.9},
     {18.4, 5.0, 10.4},
     {19.35, 2.75, 8.55},
     {20.1, 1.5, 7.6},
     {21.2, 2.8, 8.8},
     {22.6, 7.4, 10.2},
     {24, 11.9, 10.6}},
    {{12.3, 25.1, 12.3},
     {13.6, 24.2, 11.6},
     {16.2, 16.6, 9.6},
     {19.6, 8.2, 9.4},
     {21.2, 8.6, 9.6},
     {24, 14.9, 12.4}},
    {{12.3, 24.6, 9.0},
     {13.8, 22.2, 9.4},
     {17, 12.6, 8.0},
     {20, 7.6, 8.2},
     {21.6, 8.9, 7.4},
     {24, 15.6, 9.6}},
    {{12.3, 25.7, 6.1},
     {13.3, 26.3, 6.9},
     {14.1, 25.9, 6.6},
     {15.6, 22.8, 6.2},
     {19.5, 12.2, 6.4},
     {21.6, 11.6, 5.2},
     {24, 16.6, 4.8}},
}};

/// A stretch of time in which the ball does one thing.
struct BallPiece {
    enum class Kind { dribble, hold, pass, shot, drop };
    Kind kind;
    double from, to;
    int player;         ///< who has it, or passes it
    int receiver = -1;  ///< of a pass
    double apex = 0.35; ///< of a pass: metres above the straight line
};

constexpr double firstBasket = 12.3;
constexpr double secondBasket = 19.85;

const std::vector<BallPiece> ballPieces{
    {BallPiece::Kind::dribble, -1.0, 4.6, 0},        {BallPiece::Kind::pass, 4.6, 5.15, 0, 1},
    {BallPiece::Kind::hold, 5.15, 6.4, 1},           {BallPiece::Kind::pass, 6.4, 6.95, 1, 0},
    {BallPiece::Kind::dribble, 6.95, 9.8, 0},        {BallPiece::Kind::pass, 9.8, 10.35, 0, 1, 0.25},
    {BallPiece::Kind::hold, 10.35, 11.0, 1},         {BallPiece::Kind::shot, 11.0, firstBasket, 1},
    {BallPiece::Kind::drop, firstBasket, 13.45, 9},  {BallPiece::Kind::hold, 13.45, 14.1, 9},
    {BallPiece::Kind::pass, 14.1, 14.75, 9, 5, 0.7}, {BallPiece::Kind::dribble, 14.75, 17.6, 5},
    {BallPiece::Kind::pass, 17.6, 18.35, 5, 6, 0.9}, {BallPiece::Kind::hold, 18.35, 19.35, 6},
    {BallPiece::Kind::shot, 19.35, secondBasket, 6}, {BallPiece::Kind::drop, secondBasket, 21.1, 1},
    {BallPiece::Kind::hold, 21.1, 21.9, 1},          {BallPiece::Kind::pass, 21.9, 22.5, 1, 0, 0.5},
    {BallPiece::Kind::dribble, 22.5, 26.0, 0},
};

const BallPiece& pieceAt(double time) {
    for (const BallPiece& piece : ballPieces) {
        if (time < piece.to) {
            return piece;
        }
    }
    return ballPieces.back();
}

/// A jump of a player: its time and its purpose.
struct Jump {
    int player;
    double from, to, height;
    Act act;
};
const std::array<Jump, 8> jumps{{{1, 10.8, 11.45, 0.45, Act::shooting},
                                 {6, 10.95, 11.5, 0.35, Act::contesting},
                                 {6, 19.0, 19.75, 0.6, Act::shooting},
                                 {0, 19.15, 19.8, 0.5, Act::contesting},
                                 {1, 12.55, 13.0, 0.25, Act::celebrating},
                                 {2, 12.5, 12.95, 0.2, Act::celebrating},
                                 {3, 12.6, 13.05, 0.25, Act::celebrating},
                                 {5, 20.0, 20.45, 0.2, Act::celebrating}}};

double jumpHeight(int player, double time) {
    double height = 0;
    for (const Jump& jump : jumps) {
        if (jump.player == player) {
            height = std::max(height, jump.height * bump(jump.from, jump.to, time));
        }
    }
    return height;
}

Vec hoopOf(const BallPiece& shot) {
    return shot.player < 5 ? rightHoop : leftHoop;
}

/// Phase of the dribble, with two bounces in about a second. Its fraction is 0 on the floor.
double dribblePhase(const BallPiece& piece, double time) {
    return (time - piece.from) / 0.52 + 0.5;
}

/// Red players stay between their opponent and the basket, and follow his moves with a short delay.
Vec guardPlace(int man, double time) {
    const bool screened = man == 0 && time > 8.1;
    const double lag = screened ? mix(0.2, 0.75, smoothStep(8.1, 8.8, time)) : 0.2;
    const Vec mark = along(whitePaths.at(static_cast<std::size_t>(man)), time - lag);
    const Vec basket{rightHoop.x - 0.6, rightHoop.y, 0};
    const double distance = length(basket - mark);
    const double gap = man == 1 ? mix(0.42, 0.21, smoothStep(9.9, 10.9, time)) : man == 0 ? 0.17 : 0.24;
    const double toBasket = std::clamp(gap * distance, 0.9, 2.6);
    return mark + unit(basket - mark) * std::min(toBasket, distance);
}

Vec placeOf(int player, double time) {
    if (player < 5) {
        return along(whitePaths.at(static_cast<std::size_t>(player)), time);
    }
    const int man = player - 5;
    const Vec attacking = along(redPaths.at(static_cast<std::size_t>(man)), time);
    const double change = smoothStep(12.0, 13.2, time);
    return change < 1 ? mix(guardPlace(man, time), attacking, change) : attacking;
}

/// Metres that two steps cover.
double strideLength(double speed) {
    return 0.8 + 0.36 * speed;
}

} // namespace

Game::Game() {
    walkTracks();
    collectEvents();
}

void Game::walkTracks() {
    constexpr double step = 1 / tracksPerSecond;
    const int count = static_cast<int>(clipSeconds * tracksPerSecond) + 2;
    for (int player = 0; player < playerCount; ++player) {
        std::vector<Moment>& track = tracks_.at(static_cast<std::size_t>(player));
        track.reserve(static_cast<std::size_t>(count));
        double stride = chance(player, 5);
        Vec facing{player < 5 ? 1.0 : -1.0, 0, 0};
        for (int i = 0; i < count; ++i) {
            const double time = i * step;
            const Vec velocity = (placeOf(player, time + 0.04) - placeOf(player, time - 0.04)) * (1 / 0.08);
            const double speed = length(velocity);
            stride += speed / strideLength(speed) * step;

            const BallPiece& piece = pieceAt(time);
            const Vec ballHolder =
                placeOf(piece.kind == BallPiece::Kind::pass && time > piece.from + 0.2 ? piece.receiver
                                                                                       : piece.player,
                        time);
            Vec interest = ballHolder - placeOf(player, time);
            if (length(interest) < 0.3 || piece.kind == BallPiece::Kind::shot) {
                interest = (time < 13 ? rightHoop : leftHoop) - placeOf(player, time);
            }
            interest.z = 0;
            // Runners look where they run, all others look at the ball.
            Vec wanted = unit(interest) + velocity * smoothStep(1.5, 4.5, speed);
            wanted.z = 0;
            if (i == 0) {
                facing = unit(wanted);
            }
            facing = unit(mix(facing, unit(wanted, facing), 6 * step));
            track.push_back({placeOf(player, time), velocity, facing, stride});
        }
    }
}

Game::Moment Game::moment(int index, double time) const {
    const std::vector<Moment>& track = tracks_.at(static_cast<std::size_t>(index));
    const double at = std::clamp(time * tracksPerSecond, 0.0, static_cast<double>(track.size()) - 2);
    const auto i = static_cast<std::size_t>(at);
    const double share = at - std::floor(at);
    const Moment& a = track[i];
    const Moment& b = track[i + 1];
    return {mix(a.place, b.place, share), mix(a.velocity, b.velocity, share),
            unit(mix(a.facing, b.facing, share)), mix(a.stride, b.stride, share)};
}

PlayerState Game::player(int index, double time) const {
    const Moment now = moment(index, time);
    PlayerState state{
        .place = now.place, .velocity = now.velocity, .facing = now.facing, .stride = now.stride};
    state.place.z = jumpHeight(index, time);
    const double speed = length(now.velocity);
    state.crouch = mix(0.22, 0.10, smoothStep(1, 4, speed));

    const bool defends = index >= 5 ? time < 12.2 : time > 14.5 && time < 20;
    if (defends && speed < 4.5) {
        state.act = Act::guarding;
        state.crouch = mix(0.65, 0.3, smoothStep(1, 4, speed));
    }
    for (const Jump& jump : jumps) {
        if (jump.player != index || time < jump.from - 0.25 || time > jump.to + 0.3) {
            continue;
        }
        state.act = jump.act;
        state.actShare = (time - jump.from + 0.25) / (jump.to - jump.from + 0.55);
        state.crouch = 0.5 * bump(jump.from - 0.3, jump.from + 0.12, time);
        return state;
    }
    const BallPiece& piece = pieceAt(time);
    if (piece.player == index && piece.kind == BallPiece::Kind::dribble) {
        state.act = Act::dribbling;
        state.crouch = std::max(state.crouch, mix(0.40, 0.22, smoothStep(2, 5, speed)));
    } else if (piece.player == index && piece.kind == BallPiece::Kind::hold) {
        state.act = Act::holding;
    } else if (piece.kind == BallPiece::Kind::pass) {
        const bool gives = piece.player == index && time < piece.from + 0.3;
        const bool takes = piece.receiver == index && time > piece.to - 0.3;
        state.act = gives || takes ? Act::holding : state.act;
    }
    return state;
}

Vec Game::handsOf(int index, double time) const {
    const Moment now = moment(index, time);
    Vec hands = now.place + now.facing * 0.42;
    hands.z = 1.22 + jumpHeight(index, time);
    // Before a shot the ball goes up over the head.
    for (const BallPiece& piece : ballPieces) {
        if (piece.kind == BallPiece::Kind::shot && piece.player == index) {
            const double raise = smoothStep(piece.from - 0.42, piece.from, time);
            const double over = time <= piece.from ? raise : 0;
            hands =
                mix(hands, now.place + now.facing * 0.3 + Vec{0, 0, 2.35 + jumpHeight(index, time)}, over);
        }
    }
    return hands;
}

Vec Game::dribblePlace(int index, double time) const {
    const Moment now = moment(index, time);
    const Vec right{now.facing.y, -now.facing.x, 0};
    // After the screen he dribbles with the other hand.
    const double side = index == 0 && time > 5 && time < 12 ? -0.38 : 0.38;
    return now.place + now.facing * 0.42 + right * side + now.velocity * 0.03;
}

BallState Game::ball(double time) const {
    const BallPiece& piece = pieceAt(time);
    const double share = (time - piece.from) / (piece.to - piece.from);
    Vec place;
    switch (piece.kind) {
    case BallPiece::Kind::hold: place = handsOf(piece.player, time); break;
    case BallPiece::Kind::dribble: {
        Vec bouncing = dribblePlace(piece.player, time);
        const double phase = dribblePhase(piece, time);
        const double u = phase - std::floor(phase);
        bouncing.z = ballRadius + 0.78 * 4 * u * (1 - u);
        const double inHands = std::max(1 - smoothStep(piece.from, piece.from + 0.3, time),
                                        smoothStep(piece.to - 0.3, piece.to, time));
        place = mix(bouncing, handsOf(piece.player, time), inHands);
        break;
    }
    case BallPiece::Kind::pass:
        place = mix(handsOf(piece.player, piece.from), handsOf(piece.receiver, piece.to), share);
        place.z += piece.apex * 4 * share * (1 - share);
        break;
    case BallPiece::Kind::shot: {
        const double duration = piece.to - piece.from;
        place = mix(handsOf(piece.player, piece.from), hoopOf(piece), share);
        place.z += gravity * duration * duration / 8 * 4 * share * (1 - share);
        break;
    }
    case BallPiece::Kind::drop: {
        // Through the net, down, and up again until a player takes it.
        const Vec hoop = piece.from < 15 ? rightHoop : leftHoop;
        const double fallen = time - piece.from;
        const double landing = std::sqrt(2 * (hoop.z - ballRadius) / gravity);
        Vec falling = hoop;
        if (fallen < landing) {
            falling.z = hoop.z - gravity * fallen * fallen / 2;
        } else {
            const double up = fallen - landing;
            falling.z = std::max(ballRadius, ballRadius + 4.2 * up - gravity * up * up / 2);
        }
        place = mix(falling, handsOf(piece.player, piece.to), smoothStep(piece.to - 0.38, piece.to, time));
        break;
    }
    }
    return {place, time * 9};
}

double Game::focus(double time) const {
    // The mean of the ball's future positions, as a good camera operator anticipates.
    double sum = 0;
    double weights = 0;
    for (int tenth = -16; tenth <= 22; ++tenth) {
        const double offset = tenth * 0.1;
        const double weight = std::exp(-offset * offset / 1.6);
        sum += weight * ball(std::clamp(time + offset, 0.0, clipSeconds)).place.x;
        weights += weight;
    }
    return std::clamp(sum / weights, 5.6, courtLength - 5.6);
}

void Game::collectEvents() {
    for (const BallPiece& piece : ballPieces) {
        const Vec start = ball(std::clamp(piece.from, 0.0, clipSeconds)).place;
        switch (piece.kind) {
        case BallPiece::Kind::dribble:
            for (double bounce = std::ceil(dribblePhase(piece, piece.from + 0.2));; ++bounce) {
                const double time = piece.from + (bounce - 0.5) * 0.52;
                if (time > piece.to - 0.2) {
                    break;
                }
                events_.push_back({time, GameEvent::Kind::bounce, ball(std::max(0.0, time)).place});
            }
            break;
        case BallPiece::Kind::hold: events_.push_back({piece.from, GameEvent::Kind::catching, start}); break;
        case BallPiece::Kind::shot: {
            const bool home = piece.player < 5;
            events_.push_back({piece.from, GameEvent::Kind::shot, start});
            events_.push_back({piece.to, GameEvent::Kind::basket, hoopOf(piece), home ? 3 : 2, home});
            break;
        }
        case BallPiece::Kind::drop: {
            const double landing = std::sqrt(2 * (rightHoop.z - ballRadius) / gravity);
            events_.push_back({piece.from + landing, GameEvent::Kind::bounce, start});
            break;
        }
        case BallPiece::Kind::pass: break;
        }
    }
    events_.push_back({23.1, GameEvent::Kind::whistle, {14, 0, 1.8}});
    std::erase_if(events_, [](const GameEvent& event) { return event.time < 0 || event.time > clipSeconds; });
    std::sort(events_.begin(), events_.end(),
              [](const GameEvent& a, const GameEvent& b) { return a.time < b.time; });
}

int Game::points(bool homeTeam, double time) const {
    int points = 0;
    for (const GameEvent& event : events_) {
        points += event.time <= time && event.homeTeam == homeTeam ? event.points : 0;
    }
    return points;
}

} // namespace zelvra::sample
