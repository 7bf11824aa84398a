// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>

#include <optional>
#include <vector>

namespace zelvra {

/// Where things are on the timeline strip: which stretch of the source it shows, what is where on it, and
/// what a pointer meets. Values only; times in seconds of the source, lengths in logical pixels of the strip.

/// A closed stretch of the source.
struct TimeSpan {
    double lo = 0;
    double hi = 1;
    bool operator==(const TimeSpan&) const = default;
};

/// What the strip shows of a source of that duration: all of it, or the surroundings of the trim, which are
/// more behind it than before. A source of no known duration gets one second.
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

/// A bar on the strip from one moment to another; never narrower than can be seen.
struct TimelineBar {
    double x = 0;
    double width = 0;
    bool operator==(const TimelineBar&) const = default;
};
TimelineBar barOf(const TimeSpan& span, const TimelineAxis& axis);

inline constexpr double timelineDotDiameter = 14;
inline constexpr double timelineHandleReach = 7; ///< to either side; wider than what is drawn

/// What a pointer can meet on the strip.
struct TimelineTarget {
    enum class Kind { strip, startHandle, endHandle, dot };
    Kind kind = Kind::strip;
    int dot = -1; ///< its place in the list of dots
    bool operator==(const TimelineTarget&) const = default;
};

/// Dots lie over handles, and later dots over earlier ones. Of two handles that are close together it is the
/// one on the pointer's side. `handles` are the positions of both edges, where they are shown.
TimelineTarget targetAt(const QPointF& at, double height, const std::vector<double>& dots,
                        const std::optional<TimeSpan>& handles);

} // namespace zelvra
