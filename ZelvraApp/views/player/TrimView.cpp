// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/TrimView.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/views/HandleKeys.h"

#include <utility>

namespace zelvra {

TrimView::TrimView(QObject* parent) : QObject(parent) {
    connect(this, &TrimView::changed, this, &TrimView::placesChanged);
}

TrimView::~TrimView() = default;

void TrimView::setSession(Session* session) {
    session_ = session;
    AppState* state = session->state();
    editor_ = std::make_unique<TrimEditor>(state->player());
    state->playerController().playerView = editor_.get();
    connect(editor_.get(), &TrimEditor::changed, this, &TrimView::changed);
    connect(session, &Session::sourceInfoChanged, this, &TrimView::placesChanged);
    connect(session, &Session::currentTimeChanged, this, &TrimView::placesChanged);
    connect(session, &Session::videoChanged, editor_.get(), &TrimEditor::cancel);
    connect(editor_.get(), &TrimEditor::changed, this, [this] {
        if (isActive()) {
            session_->state()->cancelHighlightPreview();
        }
    });
    Q_EMIT sessionChanged();
}

double TrimView::seconds(End end) const {
    if (!isActive()) {
        return 0;
    }
    return (end == In ? editor_->inPoint() : editor_->outPoint()).seconds();
}

TimelineAxis TrimView::axis() const {
    return {currentWindow(session_ ? session_->duration() : 0, {}), width_};
}

void TrimView::setWidth(double width) {
    if (std::exchange(width_, width) != width) {
        Q_EMIT placesChanged();
    }
}

double TrimView::playheadX() const {
    return session_ ? axis().position(session_->currentSeconds()) : 0;
}

void TrimView::beginDrag(End end, double x) {
    dragged_ = end;
    grabOffset_ = x - axis().position(seconds(end));
}

void TrimView::dragTo(double x) {
    move(dragged_, axis().time(x - grabOffset_));
}

void TrimView::endDrag() {
    const CMTime point = std::exchange(movedTo_, CMTime::invalid());
    if (point.isValid()) {
        session_->state()->seek(point);
    }
}

bool TrimView::nudge(End end, int key, int modifiers) {
    const auto step = handleStep(key, modifiers);
    if (step) {
        move(end, seconds(end) + *step);
        endDrag();
    }
    return step.has_value();
}

/// The player's picture follows.
void TrimView::move(End end, double seconds) {
    if (end == In) {
        editor_->setInPoint(sessionTime(seconds));
    } else {
        editor_->setOutPoint(sessionTime(seconds));
    }
    movedTo_ = end == In ? editor_->inPoint() : editor_->outPoint();
    session_->state()->pause();
    session_->state()->scrub(movedTo_);
}

} // namespace zelvra
