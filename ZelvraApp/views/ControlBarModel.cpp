// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/ControlBarModel.h"

#include "ZelvraApp/session/RoughClip.h"
#include "ZelvraApp/views/Texts.h"

#include <utility>

namespace zelvra {

void ControlBarModel::setSession(Session* session) {
    if (session_ == session || session == nullptr) {
        return;
    }
    session_ = session;
    AppState* state = session->state();
    for (const auto changedValue :
         {&AppState::clipQueueChanged, &AppState::queueIndexChanged, &AppState::trimRangeChanged,
          &AppState::markedClipsChanged, &AppState::activeRoughClipIDChanged}) {
        connect(state, changedValue, this, &ControlBarModel::changed);
    }
    connect(&state->preferences(), &PreferenceStore::changed, this, &ControlBarModel::changed);
    Q_EMIT changed();
}

QString ControlBarModel::inPointTip() const {
    return session_
               ? Texts::inPointTip(session_->hasTrim(), roughClipLengthSec(session_->state()->preferences()))
               : QString();
}

QString ControlBarModel::outPointTip() const {
    return session_
               ? Texts::outPointTip(session_->hasTrim(), session_->state()->activeRoughClipID().has_value())
               : QString();
}

QString ControlBarModel::exportLabel() const {
    return session_ ? Texts::exportLabel(session_->markedClipCount()) : QString();
}

void ControlBarModel::setWidths(const ControlBarWidths& widths) {
    if (std::exchange(widths_, widths) != widths) {
        Q_EMIT widthsChanged();
    }
}

} // namespace zelvra
