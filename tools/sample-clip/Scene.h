// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Game.h"
#include "tools/sample-clip/Hall.h"

namespace zelvra::sample {

/// Draws whole frames: hall, players, ball, and the scoreboard over them. Several threads may use it at once.
class Scene {
public:
    static constexpr int width = 1920;
    static constexpr int height = 1080;

    explicit Scene(const Game& game) : game_(game) {}

    /// width * height pixels of 0xFFRRGGBB, row after row.
    using Pixels = std::vector<std::uint32_t>;
    /// Draws the frame at `time` and replaces the contents of `pixels`.
    void draw(double time, Pixels& pixels) const;
    Camera camera(double time) const;

private:
    const Game& game_;
    Hall hall_;
};

} // namespace zelvra::sample
