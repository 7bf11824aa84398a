// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/PlayerControls.h"

#include "ZelvraApp/annotations/SessionTime.h"

#include <algorithm>

namespace zelvra {

PlayerControls::PlayerControls(QObject* parent) : QObject(parent) {}

void PlayerControls::setSession(Session* session) {
    session_ = session;
    AppState* state = session->state();
    connect(&state->player(), &Player::rateChanged, this, &PlayerControls::playingChanged);
    connect(state, &AppState::previewHighlightChanged, this, &PlayerControls::playingChanged);
    connect(session, &Session::currentTimeChanged, this, &PlayerControls::timeChanged);
    connect(session, &Session::sourceInfoChanged, this, &PlayerControls::timeChanged);
    connect(session, &Session::videoChanged, this, &PlayerControls::endShuttle);
    Q_EMIT sessionChanged();
}

bool PlayerControls::isPlaying() const {
    return session_ && (player().rate() != 0 || session_->state()->previewHighlight());
}

QString PlayerControls::elapsedText() const {
    return session_ ? session_->timecode() : QString();
}

QString PlayerControls::remainingText() const {
    if (!session_) {
        return {};
    }
    return QLatin1Char('-') +
           Session::timecodeOf(std::max(0.0, session_->duration() - session_->currentSeconds()));
}

double PlayerControls::volume() const {
    return session_ ? player().volume() : 1;
}

void PlayerControls::setVolume(double volume) {
    player().setVolume(volume);
    player().setMuted(false);
    Q_EMIT soundChanged();
}

bool PlayerControls::isMuted() const {
    return session_ && player().isMuted();
}

void PlayerControls::setMuted(bool muted) {
    player().setMuted(muted);
    Q_EMIT soundChanged();
}

void PlayerControls::setRate(double rate) {
    rate_ = rate;
    endShuttle();
    player().setDefaultRate(rate);
    Q_EMIT rateChanged();
}

QString PlayerControls::textOfRate(double rate) {
    return QString::number(rate) + QStringLiteral("×");
}

void PlayerControls::togglePlaying() {
    if (isPlaying()) {
        pause();
    } else {
        session_->state()->play();
    }
}

void PlayerControls::scrub(double seconds) {
    if (player().rate() > 0) {
        resumesAfterScrub_ = true;
        session_->state()->pause();
    }
    endShuttle();
    session_->state()->scrub(sessionTime(seconds));
}

void PlayerControls::endScrub(double seconds) {
    session_->seek(seconds);
    if (std::exchange(resumesAfterScrub_, false)) {
        session_->state()->play();
    }
}

void PlayerControls::step(int frames) {
    endShuttle();
    session_->state()->step(frames);
}

bool PlayerControls::handleKey(int key, int modifiers, bool isRepeated) {
    constexpr int longStep = 10;
    const int others = modifiers & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (!session_ || !session_->hasVideo() || others != 0) {
        return false;
    }
    const bool shift = (modifiers & Qt::ShiftModifier) != 0;
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (!isRepeated || !player().isMoving()) { // a held key stops with the picture when it is released
            step((key == Qt::Key_Left ? -1 : 1) * (shift ? longStep : 1));
        }
        return true;
    default: break;
    }
    if (shift) {
        return false;
    }
    switch (key) {
    case Qt::Key_Space: togglePlaying(); return true;
    case Qt::Key_J: shuttleBackward(); return true;
    case Qt::Key_K: pause(); return true;
    case Qt::Key_L: shuttleForward(); return true;
    case Qt::Key_Home: session_->seek(0); return true;
    case Qt::Key_End: session_->seek(session_->duration()); return true;
    default: return false;
    }
}

void PlayerControls::pause() {
    endShuttle();
    session_->state()->pause();
    Q_EMIT playingChanged();
}

/// Plays, and faster with each press. If the shuttle went backwards, plays at the usual speed.
void PlayerControls::shuttleForward() {
    const bool faster = player().rate() > 0;
    const double next = faster ? std::min(std::max(player().rate(), 1.0) * 2, fastestShuttle) : rate_;
    endShuttle();
    session_->state()->cancelHighlightPreview();
    shuttleRate_ = next;
    player().setDefaultRate(next);
    session_->state()->play();
}

/// Plays backward, and faster with each press.
void PlayerControls::shuttleBackward() {
    const double next = player().rate() < 0 ? std::max(player().rate() * 2, -fastestShuttle) : -1;
    endShuttle();
    session_->state()->cancelHighlightPreview();
    shuttleRate_ = next;
    player().playBackward(-next);
}

void PlayerControls::endShuttle() {
    if (std::exchange(shuttleRate_, 0) != 0) {
        player().setDefaultRate(rate_);
        Q_EMIT playingChanged();
    }
}

} // namespace zelvra
