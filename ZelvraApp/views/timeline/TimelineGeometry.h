// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>

#include <optional>
#include <vector>

namespace zelvra {

/// Geometry of the timeline strip: which part of the source it shows, where moments and marks are on it, and
/// what is under a pointer. Values only; times in seconds of the source, lengths in logical pixels of the
/// strip.

/// A part of the source; both ends belong to it.
struct TimeSpan {
    double lo = 0;
    double hi = 1;
    bool operator==(const TimeSpan&) const = default;
};

/// The part of a source of that duration that the strip shows: all of it, or the trim with 10 s before and 30
/// s after it. One second if the duration is not known.
TimeSpan currentWindow(double duration, const std::optional<TimeSpan>& trim);

/// The strip's one axis: times of a window spread over a width.
class TimelineAxis {
public:
    TimelineAxis() = default;
    TimelineAxis(const TimeSpan& window, double width);

    const TimeSpan& window() const { return window_; }
    double width() const { return width_; }
    /// Times outside the window are at its ends; positions outside the strip too.
    double position(double seconds) const;
    double time(double x) const;
    /// Its ends count.
    bool shows(double seconds) const { return window_.lo <= seconds && seconds <= window_.hi; }
    /// It shows less than a source of that duration.
    bool isZoomed(double duration) const;

    bool operator==(const TimelineAxis&) const = default;

private:
    double span() const;

    TimeSpan window_;
    double width_ = 0;
};

/// A bar on the strip from one moment to another; at least 2 pixels wide, so that it is visible.
struct TimelineBar {
    double x = 0;
    double width = 0;
    bool operator==(const TimelineBar&) const = default;
};
TimelineBar barOf(const TimeSpan& span, const TimelineAxis& axis);

inline constexpr double timelineDotDiameter = 14;
inline constexpr double timelineHandleReach = 7; ///< to either side; wider than what is drawn

/// What can be under a pointer on the strip.
struct TimelineTarget {
    enum class Kind { strip, startHandle, endHandle, dot };
    Kind kind = Kind::strip;
    int dot = -1; ///< its place in the list of dots
    bool operator==(const TimelineTarget&) const = default;
};

/// Dots are over handles, and later dots over earlier ones. Of two handles that are close together the one on
/// the pointer's side counts. `handles` are the positions of both edges, if they are shown.
TimelineTarget targetAt(const QPointF& at, double height, const std::vector<double>& dots,
                        const std::optional<TimeSpan>& handles);

} // namespace zelvra
