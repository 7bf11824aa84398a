// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tools/sample-clip/Space.h"

namespace zelvra::sample {

/// A point of a picture, in pixels from its top left. `scale` is pixels per metre at that point, `depth` is
/// its distance in metres.
struct Projected {
    double x = 0, y = 0, scale = 0, depth = 0;
};

/// A television camera on a tripod in the stand. It turns and zooms, but never moves.
class Camera {
public:
    static constexpr Vec place{14, -13.5, 8.6};

    /// `pan` to the right and `tilt` downwards in radians; `focal` in pixels.
    Camera(int width, int height, double pan, double tilt, double focal);

    Projected project(Vec point) const;
    /// The direction from the camera through the pixel (x, y).
    Vec ray(double x, double y) const;

    /// A direction in the camera's own axes: x to the right, y up, z ahead.
    Vec inView(Vec direction) const {
        return {dot(direction, right_), dot(direction, up_), dot(direction, forward_)};
    }

    double focal() const { return focal_; }
    int width() const { return width_; }
    int height() const { return height_; }

private:
    int width_;
    int height_;
    double focal_;
    Vec forward_, right_, up_;
};

} // namespace zelvra::sample
