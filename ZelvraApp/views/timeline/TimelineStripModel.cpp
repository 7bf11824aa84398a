// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/timeline/TimelineStripModel.h"

#include "ZelvraApp/bridge/SessionModels.h"
#include "ZelvraApp/session/Colors.h"
#include "ZelvraApp/views/HandleKeys.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace zelvra {

namespace {

using Kind = TimelineTarget::Kind;

/// A press that moves less is a click.
constexpr double dragThreshold = 1;

std::optional<TimelineStripModel::Edge> edgeOf(const TimelineTarget& target) {
    switch (target.kind) {
    case Kind::startHandle: return TimelineStripModel::Edge::start;
    case Kind::endHandle: return TimelineStripModel::Edge::end;
    default: return std::nullopt;
    }
}

} // namespace

void TimelineStripModel::setSession(Session* session) {
    if (session_ == session || session == nullptr) {
        return;
    }
    session_ = session;
    const AppState* state = session->state();
    connect(session, &Session::sourceInfoChanged, this, &TimelineStripModel::updateAxis);
    connect(session, &Session::trimChanged, this, &TimelineStripModel::updateTrim);
    connect(session, &Session::currentTimeChanged, this, &TimelineStripModel::playheadChanged);
    connect(session, &Session::editingClipIDChanged, this, &TimelineStripModel::updateClipBars);
    connect(state, &AppState::markedClipsChanged, this, &TimelineStripModel::updateClipBars);
    connect(state, &AppState::highlightsChanged, this, &TimelineStripModel::updateDots);
    updateAxis();
    Q_EMIT sessionChanged();
}

void TimelineStripModel::setWidth(double width) {
    axis_ = TimelineAxis(axis_.window(), width);
    updateAxis();
}

void TimelineStripModel::updateAxis() {
    axis_ = TimelineAxis(frozenWindow_.value_or(currentWindow(duration(), trim())), axis_.width());
    Q_EMIT axisChanged();
    Q_EMIT playheadChanged();
    Q_EMIT trimChanged();
    updateClipBars();
    updateDots();
}

/// Dragging an edge leaves the axis alone, and with it all marks.
void TimelineStripModel::updateTrim() {
    if (frozenWindow_.value_or(currentWindow(duration(), trim())) == axis_.window()) {
        Q_EMIT trimChanged();
    } else {
        updateAxis();
    }
}

void TimelineStripModel::updateClipBars() {
    clipBars_.clear();
    if (duration() > 0) {
        for (const MarkedClip& clip : session_->state()->markedClips()) {
            if (clip.id != session_->state()->editingClipID()) {
                clipBars_.push_back(barOf({clip.range.start.seconds(), clip.range.end().seconds()}, axis_));
            }
        }
    }
    Q_EMIT clipBarsChanged();
}

void TimelineStripModel::updateDots() {
    dots_.clear();
    if (session_) {
        for (const Highlight& highlight : session_->state()->highlights()) {
            const double seconds = highlight.timestamp.seconds();
            if (axis_.shows(seconds)) {
                dots_.push_back({rowId(highlight.id), seconds, axis_.position(seconds),
                                 toQColor(highlight.shape.strokeColor)});
            }
        }
    }
    setTarget(std::nullopt); // what was under the pointer may be gone
    setCurrentDot(std::min(currentDot_, static_cast<int>(dots_.size()) - 1));
    Q_EMIT dotsChanged();
}

std::optional<TimeSpan> TimelineStripModel::trim() const {
    return session_ && session_->hasTrim()
               ? std::optional(TimeSpan{session_->trimStart(), session_->trimEnd()})
               : std::nullopt;
}

std::optional<TimeSpan> TimelineStripModel::handles() const {
    return showsHandles() ? std::optional(TimeSpan{startHandleX(), endHandleX()}) : std::nullopt;
}

bool TimelineStripModel::isZoomed() const {
    return axis_.isZoomed(duration());
}

QString TimelineStripModel::startLabel() const {
    return Session::timecodeOf(axis_.window().lo);
}

QString TimelineStripModel::endLabel() const {
    return Session::timecodeOf(axis_.window().hi);
}

bool TimelineStripModel::showsPlayhead() const {
    return session_ && axis_.shows(session_->currentSeconds());
}

double TimelineStripModel::playheadX() const {
    return session_ ? axis_.position(session_->currentSeconds()) : 0;
}

bool TimelineStripModel::showsTrim() const {
    return duration() > 0 && session_->hasTrim();
}

double TimelineStripModel::trimX() const {
    return showsTrim() ? barOf(*trim(), axis_).x : 0;
}

double TimelineStripModel::trimWidth() const {
    return showsTrim() ? barOf(*trim(), axis_).width : 0;
}

double TimelineStripModel::startHandleX() const {
    return showsTrim() ? axis_.position(session_->trimStart()) : 0;
}

double TimelineStripModel::endHandleX() const {
    return showsTrim() ? axis_.position(session_->trimEnd()) : 0;
}

// ---- The pointer

TimelineTarget TimelineStripModel::targetAtPoint(double x, double y) const {
    std::vector<double> positions;
    std::ranges::transform(dots_, std::back_inserter(positions), &Dot::x);
    return targetAt({x, y}, height_, positions, handles());
}

void TimelineStripModel::hover(double x, double y) {
    setTarget(targetAtPoint(x, y));
}

void TimelineStripModel::leave() {
    setTarget(std::nullopt);
}

void TimelineStripModel::setTarget(std::optional<TimelineTarget> target) {
    if (hovered_ != target) {
        hovered_ = target;
        Q_EMIT hoverChanged();
    }
}

void TimelineStripModel::press(double x, double y) {
    pressed_ = targetAtPoint(x, y);
    pressX_ = x;
}

void TimelineStripModel::move(double x) {
    const auto edge = pressed_ ? edgeOf(*pressed_) : std::nullopt;
    if (!edge || (!draggingEdge() && std::abs(x - pressX_) < dragThreshold)) {
        return;
    }
    if (!draggingEdge()) {
        beginDrag();
    }
    dragEdge(*edge, axis_.time(x));
}

void TimelineStripModel::release(double x, double y) {
    const auto pressed = std::exchange(pressed_, std::nullopt);
    if (draggingEdge()) {
        endDrag();
    } else if (pressed == TimelineTarget{} && duration() > 0 && axis_.width() > 0) {
        session_->seek(axis_.time(x));
    } else if (pressed && pressed->kind == Kind::dot && pressed == targetAtPoint(x, y)) {
        session_->editHighlight(dots_[static_cast<std::size_t>(pressed->dot)].id);
    }
}

void TimelineStripModel::cancel() {
    pressed_.reset();
    if (draggingEdge()) {
        endDrag();
    }
}

void TimelineStripModel::beginDrag() {
    frozenWindow_ = axis_.window();
    session_->state()->pushUndo();
    Q_EMIT draggingEdgeChanged();
}

void TimelineStripModel::endDrag() {
    frozenWindow_.reset();
    Q_EMIT draggingEdgeChanged();
    updateAxis();
}

void TimelineStripModel::dragEdge(Edge edge, double toSeconds) {
    if (edge == Edge::start) {
        session_->state()->dragTrimStart(toSeconds);
    } else {
        session_->state()->dragTrimEnd(toSeconds);
    }
}

QString TimelineStripModel::tip() const {
    switch (hovered_.value_or(TimelineTarget{}).kind) {
    case Kind::startHandle: return tr("Drag to adjust the clip's start");
    case Kind::endHandle: return tr("Drag to adjust the clip's end");
    case Kind::dot: return tipOf(dots_[static_cast<std::size_t>(hovered_->dot)]);
    case Kind::strip: break;
    }
    return {};
}

QString TimelineStripModel::tipOf(const Dot& dot) const {
    return tr("%1 — click to edit").arg(Session::timecodeOf(dot.seconds));
}

double TimelineStripModel::tipX() const {
    switch (hovered_.value_or(TimelineTarget{}).kind) {
    case Kind::startHandle: return startHandleX();
    case Kind::endHandle: return endHandleX();
    case Kind::dot: return dots_[static_cast<std::size_t>(hovered_->dot)].x;
    case Kind::strip: break;
    }
    return 0;
}

bool TimelineStripModel::overHandle() const {
    return hovered_ && edgeOf(*hovered_);
}

bool TimelineStripModel::overDot() const {
    return hovered_ && hovered_->kind == Kind::dot;
}

// ---- Keys

bool TimelineStripModel::nudgeStart(int key, int modifiers, bool keyWasHeld) {
    return nudge(Edge::start, handleStep(key, modifiers), keyWasHeld);
}

bool TimelineStripModel::nudgeEnd(int key, int modifiers, bool keyWasHeld) {
    return nudge(Edge::end, handleStep(key, modifiers), keyWasHeld);
}

bool TimelineStripModel::nudge(Edge edge, std::optional<double> seconds, bool keyWasHeld) {
    const auto now = trim();
    if (seconds && now && !draggingEdge()) {
        if (!keyWasHeld) {
            session_->state()->pushUndo();
        }
        dragEdge(edge, (edge == Edge::start ? now->lo : now->hi) + *seconds);
    }
    return seconds.has_value();
}

void TimelineStripModel::goToDot(int step) {
    const int last = static_cast<int>(dots_.size()) - 1;
    setCurrentDot(std::min(std::max(currentDot_ + step, 0), last));
}

void TimelineStripModel::setCurrentDot(int dot) {
    currentDot_ = dot;
    Q_EMIT currentDotChanged();
}

QString TimelineStripModel::currentDotTip() const {
    return currentDot_ < 0 ? QString() : tipOf(dots_[static_cast<std::size_t>(currentDot_)]);
}

void TimelineStripModel::editCurrentDot() {
    if (currentDot_ >= 0) {
        session_->editHighlight(dots_[static_cast<std::size_t>(currentDot_)].id);
    }
}

} // namespace zelvra
