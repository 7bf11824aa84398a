// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/Dialogs.h"

#include <algorithm>

namespace zelvra {

Dialogs::Dialogs(Session& session, QObject* parent) : QObject(parent), session_(session) {
    const auto follow = [this, state = session.state()](Question question, auto notify, auto isWanted) {
        const auto look = [this, state, question, isWanted] { want(question, isWanted(*state)); };
        connect(state, notify, this, look);
        look();
    };
    follow(ErrorAlert, &AppState::errorMessageChanged,
           [](const AppState& state) { return !state.errorMessage().isEmpty(); });
    follow(ScopePrompt, &AppState::showDefaultsScopePromptChanged,
           [](const AppState& state) { return state.showDefaultsScopePrompt(); });
    follow(CloseConfirmation, &AppState::showCloseConfirmationChanged,
           [](const AppState& state) { return state.showCloseConfirmation(); });
    follow(PostExport, &AppState::showPostExportDialogChanged,
           [](const AppState& state) { return state.showPostExportDialog(); });
    connect(&session, &Session::hasDraftChanged, this, &Dialogs::changed);
}

void Dialogs::want(Question question, bool wanted) {
    const auto place = std::ranges::find(line_, question);
    if (wanted == (place != line_.end())) {
        return;
    }
    if (wanted) {
        line_.push_back(question);
    } else {
        line_.erase(place);
    }
    Q_EMIT changed();
}

Dialogs::Question Dialogs::current() const {
    if (line_.empty()) {
        return None;
    }
    if (session_.hasDraft()) {
        return std::ranges::find(line_, ErrorAlert) != line_.end() ? ErrorAlert : None;
    }
    return line_.front();
}

void Dialogs::dismiss(Question question) {
    AppState& state = *session_.state();
    switch (question) {
    case ErrorAlert: state.setErrorMessage({}); break;
    case ScopePrompt: state.setShowDefaultsScopePrompt(false); break;
    case CloseConfirmation: state.setShowCloseConfirmation(false); break;
    case PostExport: state.setShowPostExportDialog(false); break;
    case None: break;
    }
}

} // namespace zelvra
