// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/timeline/TimelineGeometry.h"

#include <algorithm>
#include <cmath>

namespace zelvra {

namespace {

constexpr double leadIn = 10;
constexpr double tail = 30;
constexpr double shortestSpan = 0.001;
constexpr double narrowestBar = 2;

} // namespace

TimeSpan currentWindow(double duration, const std::optional<TimeSpan>& trim) {
    if (!(duration > 0)) {
        return {0, 1};
    }
    if (trim) {
        const TimeSpan around{std::max(trim->lo - leadIn, 0.0), std::min(trim->hi + tail, duration)};
        if (around.lo < around.hi) {
            return around;
        }
    }
    return {0, duration};
}

TimelineAxis::TimelineAxis(const TimeSpan& window, double width)
    : window_(window), width_(std::max(width, 0.0)) {}

double TimelineAxis::span() const {
    return std::max(window_.hi - window_.lo, shortestSpan);
}

double TimelineAxis::position(double seconds) const {
    return (std::clamp(seconds, window_.lo, window_.lo + span()) - window_.lo) / span() * width_;
}

double TimelineAxis::time(double x) const {
    return width_ > 0 ? window_.lo + std::clamp(x, 0.0, width_) / width_ * span() : window_.lo;
}

bool TimelineAxis::isZoomed(double duration) const {
    return duration > 0 && span() < duration - shortestSpan;
}

TimelineBar barOf(const TimeSpan& span, const TimelineAxis& axis) {
    const double from = axis.position(span.lo);
    const double to = axis.position(span.hi);
    const double width = std::max(to - from, narrowestBar);
    return {(from + to - width) / 2, width};
}

TimelineTarget targetAt(const QPointF& at, double height, const std::vector<double>& dots,
                        const std::optional<TimeSpan>& handles) {
    for (int dot = static_cast<int>(dots.size()) - 1; dot >= 0; --dot) {
        const double across = at.x() - dots[static_cast<std::size_t>(dot)];
        if (std::hypot(across, at.y() - height / 2) <= timelineDotDiameter / 2) {
            return {TimelineTarget::Kind::dot, dot};
        }
    }
    if (handles) {
        const double toStart = std::abs(at.x() - handles->lo);
        const double toEnd = std::abs(at.x() - handles->hi);
        if (std::min(toStart, toEnd) <= timelineHandleReach) {
            const bool start = at.x() < (handles->lo + handles->hi) / 2;
            return {start ? TimelineTarget::Kind::startHandle : TimelineTarget::Kind::endHandle};
        }
    }
    return {};
}

} // namespace zelvra
