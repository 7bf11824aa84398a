// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/ScrubberModel.h"

namespace zelvra {

void ScrubberModel::setSession(Session* session) {
    session_ = session;
    connect(session, &Session::sourceInfoChanged, this, &ScrubberModel::placesChanged);
    connect(session, &Session::currentTimeChanged, this, &ScrubberModel::placesChanged);
    Q_EMIT placesChanged();
}

void ScrubberModel::setControls(PlayerControls* controls) {
    controls_ = controls;
    Q_EMIT placesChanged();
}

void ScrubberModel::setWidth(double width) {
    width_ = width;
    Q_EMIT placesChanged();
}

TimelineAxis ScrubberModel::axis() const {
    return {currentWindow(session_ ? session_->duration() : 0, {}), width_};
}

double ScrubberModel::playheadX() const {
    return session_ ? axis().position(pulledTo_.value_or(session_->currentSeconds())) : 0;
}

void ScrubberModel::pull(double x) {
    pulledTo_ = axis().time(x);
    Q_EMIT placesChanged();
    controls_->scrub(*pulledTo_);
}

void ScrubberModel::release(double x) {
    pulledTo_.reset();
    controls_->endScrub(axis().time(x));
    Q_EMIT placesChanged();
}

QString ScrubberModel::timecodeAt(double x) const {
    return Session::timecodeOf(axis().time(x));
}

} // namespace zelvra
