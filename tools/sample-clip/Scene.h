// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Game.h"
#include "tools/sample-clip/Hall.h"

namespace zelvra::sample {

/// Draws whole frames: hall, players, ball, and the scoreboard over them. May be used by several threads.
class Scene {
public:
    static constexpr int width = 1920;
    static constexpr int height = 1080;

    explicit Scene(const Game& game) : game_(game) {}

    /// width * height pixels of 0xFFRRGGBB, row after row.
    using Pixels = std::vector<std::uint32_t>;
    /// Draws the moment `time` over whatever `pixels` holds.
    void draw(double time, Pixels& pixels) const;
    Camera camera(double time) const;

private:
    const Game& game_;
    Hall hall_;
};

} // namespace zelvra::sample
