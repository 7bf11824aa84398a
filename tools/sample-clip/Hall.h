// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Camera.h"
#include "tools/sample-clip/Canvas.h"

#include <array>
#include <cstdint>
#include <vector>

namespace zelvra::sample {

/// The court, its boards, and the crowd in the stands. The camera only turns, so all of this is painted once
/// as a wide panorama, and each frame shows a part of it.
class Hall {
public:
    Hall();

    /// Fills `frame` (width * height pixels of 0xFFRRGGBB) with the camera's view. `excitement` from 0 to 1
    /// makes the crowd stand up.
    void paint(std::uint32_t* frame, const Camera& camera, double time, double excitement) const;

private:
    static constexpr std::size_t crowdMoments = 4;

    struct Layer {
        int width = 0, height = 0;
        std::vector<std::uint32_t> pixels;
    };
    Layer paintStands(int moment, bool excited) const;
    void paintGround();

    Camera wide_;
    Layer ground_;                              ///< opaque where it covers the crowd
    std::array<Layer, crowdMoments * 2> crowd_; ///< calm pictures first, then excited ones
};

/// Draws a basket with its board, stand and net; `swish` runs from 0 to 1 while a ball goes through it.
void drawBasket(cairo_t* cr, const Camera& camera, bool right, double swish);

} // namespace zelvra::sample
