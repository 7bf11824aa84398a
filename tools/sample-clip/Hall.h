// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Camera.h"
#include "tools/sample-clip/Canvas.h"

#include <array>
#include <cstdint>
#include <vector>

namespace zelvra::sample {

/// The court, its boards, and the crowd in the stands. As the camera only turns in its place, all of this is
/// painted once, as a wide panorama, and each frame looks at a part of it.
class Hall {
public:
    Hall();

    /// Fills `frame` (width * height pixels of 0xFFRRGGBB) with what `camera` sees. `excitement` from 0 to 1
    /// brings the crowd to its feet.
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
    Layer ground_;                              ///< opaque where it is nearer than the crowd
    std::array<Layer, crowdMoments * 2> crowd_; ///< calm moments, then excited ones
};

/// A basket with its board, stand and net; `swish` from 0 to 1 while a ball goes through it.
void drawBasket(cairo_t* cr, const Camera& camera, bool right, double swish);

} // namespace zelvra::sample
