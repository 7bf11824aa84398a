// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cmath>

namespace zelvra::sample {

/// Points and directions in the hall, in metres: x along the court from its left end (0 to 28), y across it
/// away from the camera (0 to 15), z up from the floor.
struct Vec {
    double x = 0, y = 0, z = 0;
};

inline Vec operator+(Vec a, Vec b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec operator-(Vec a, Vec b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec operator*(Vec a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
inline double dot(Vec a, Vec b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec cross(Vec a, Vec b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Vec a) {
    return std::sqrt(dot(a, a));
}
inline Vec unit(Vec a, Vec fallback = {1, 0, 0}) {
    const double size = length(a);
    return size > 1e-9 ? a * (1 / size) : fallback;
}
inline Vec mix(Vec a, Vec b, double share) {
    return a + (b - a) * share;
}
inline double mix(double a, double b, double share) {
    return a + (b - a) * share;
}
/// 0 before `from`, 1 after `to`, and smooth between.
inline double smoothStep(double from, double to, double at) {
    const double share = std::clamp((at - from) / (to - from), 0.0, 1.0);
    return share * share * (3 - 2 * share);
}
/// A bump: 0 outside `from` to `to`, 1 at the middle.
inline double bump(double from, double to, double at) {
    const double share = (at - from) / (to - from);
    return share <= 0 || share >= 1 ? 0 : 4 * share * (1 - share);
}

/// A pseudo-random number, evenly distributed from 0 to 1, the same for the same arguments. Needs no
/// generator state.
inline double chance(int a, int b = 0, int c = 0) {
    unsigned hash = static_cast<unsigned>(a) * 0x9E3779B1U ^ static_cast<unsigned>(b) * 0x85EBCA77U ^
                    static_cast<unsigned>(c) * 0xC2B2AE3DU;
    hash = (hash ^ hash >> 15) * 0x2C1B3C6DU;
    hash = (hash ^ hash >> 12) * 0x297A2D39U;
    return (hash ^ hash >> 15) / 4294967296.0;
}

} // namespace zelvra::sample
