// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/sample-clip/Camera.h"

namespace zelvra::sample {

Camera::Camera(int width, int height, double pan, double tilt, double focal)
    : width_(width),
      height_(height),
      focal_(focal),
      forward_{std::sin(pan) * std::cos(tilt), std::cos(pan) * std::cos(tilt), -std::sin(tilt)},
      right_{std::cos(pan), -std::sin(pan), 0},
      up_(cross(right_, forward_)) {}

Projected Camera::project(Vec point) const {
    const Vec toPoint = point - place;
    const double depth = std::max(0.1, dot(toPoint, forward_));
    const double scale = focal_ / depth;
    return {width_ / 2.0 + dot(toPoint, right_) * scale, height_ / 2.0 - dot(toPoint, up_) * scale, scale,
            depth};
}

Vec Camera::ray(double x, double y) const {
    return forward_ * focal_ + right_ * (x - width_ / 2.0) + up_ * (height_ / 2.0 - y);
}

} // namespace zelvra::sample
