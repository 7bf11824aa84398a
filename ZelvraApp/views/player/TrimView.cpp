// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/player/TrimView.h"

#include "ZelvraApp/session/SessionTime.h"

#include <utility>

namespace zelvra {

TrimView::~TrimView() = default;

void TrimView::setSession(Session* session) {
    session_ = session;
    AppState* state = session->state();
    editor_ = std::make_unique<TrimEditor>(state->player());
    state->playerController().playerView = editor_.get();
    connect(editor_.get(), &TrimEditor::changed, this, &TrimView::changed);
    connect(session, &Session::videoChanged, editor_.get(), &TrimEditor::cancel);
    connect(editor_.get(), &TrimEditor::changed, this, [this] {
        if (isActive()) {
            session_->state()->cancelHighlightPreview();
        }
    });
    Q_EMIT sessionChanged();
}

void TrimView::dragIn(double seconds) {
    editor_->setInPoint(sessionTime(seconds));
    follow(editor_->inPoint());
}

void TrimView::dragOut(double seconds) {
    editor_->setOutPoint(sessionTime(seconds));
    follow(editor_->outPoint());
}

void TrimView::endDrag() {
    const CMTime point = std::exchange(dragged_, CMTime::invalid());
    if (point.isValid()) {
        session_->state()->seekSoon(point);
    }
}

void TrimView::follow(const CMTime& point) {
    Player& player = session_->state()->player();
    player.pause();
    player.scrub(point);
    dragged_ = point;
}

} // namespace zelvra
