// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Space.h"

#include <array>
#include <optional>
#include <vector>

namespace zelvra::sample {

/// The action of the clip: the positions of the ten players and the ball at any time, and what each player
/// does. A pure function of time, computed once. Drawing and sound are derived from it.

constexpr double clipSeconds = 24;
constexpr double courtLength = 28;
constexpr double courtWidth = 15;
constexpr double ballRadius = 0.12;
constexpr Vec leftHoop{1.575, 7.5, 3.05};
constexpr Vec rightHoop{26.425, 7.5, 3.05};
constexpr int playerCount = 10; ///< 0 to 4 play in white towards the right, 5 to 9 in red towards the left

/// What the upper body does.
enum class Act { moving, guarding, dribbling, holding, shooting, contesting, celebrating };

struct PlayerState {
    Vec place;         ///< between the feet, on the floor; z while jumping
    Vec velocity;      ///< metres a second
    Vec facing;        ///< level and of length 1
    double stride = 0; ///< position in the cycle of two steps; only its fraction matters
    double crouch = 0; ///< 0 upright to 1 deep
    Act act = Act::moving;
    double actShare = 0; ///< progress of the act, 0 to 1
};

struct BallState {
    Vec place;
    double spin = 0; ///< radians
};

/// An event that is heard, or shown on the scoreboard.
struct GameEvent {
    enum class Kind { bounce, catching, shot, basket, whistle };
    double time = 0;
    Kind kind = Kind::bounce;
    Vec place;
    int points = 0;
    bool homeTeam = false;
};

class Game {
public:
    Game();

    PlayerState player(int index, double time) const;
    BallState ball(double time) const;
    /// The camera's aim along the court. It follows the ball smoothly.
    double focus(double time) const;
    /// In order of time.
    const std::vector<GameEvent>& events() const { return events_; }
    /// Points of a team scored up to `time`, within the clip.
    int points(bool homeTeam, double time) const;

private:
    struct Moment {
        Vec place, velocity, facing;
        double stride = 0;
    };
    Moment moment(int index, double time) const;
    Vec handsOf(int index, double time) const;
    Vec dribblePlace(int index, double time) const;
    void walkTracks();
    void collectEvents();

    std::array<std::vector<Moment>, playerCount> tracks_;
    std::vector<GameEvent> events_;
};

} // namespace zelvra::sample
