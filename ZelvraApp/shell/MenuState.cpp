// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/MenuState.h"

#include "ZelvraApp/views/Texts.h"

namespace zelvra {

MenuState::MenuState(const Session& session, const Leaving& leaving, QObject* parent)
    : QObject(parent), session_(session), state_(*session.state()), leaving_(leaving) {
    for (const auto signal :
         {&AppState::videoURLChanged, &AppState::recentsChanged, &AppState::canExportChanged,
          &AppState::markedClipsChanged, &AppState::canUndoChanged, &AppState::canRedoChanged,
          &AppState::trimRangeChanged, &AppState::editingClipIDChanged, &AppState::queueIndexChanged,
          &AppState::canGoNextChanged, &AppState::errorMessageChanged,
          &AppState::showDefaultsScopePromptChanged, &AppState::showCloseConfirmationChanged,
          &AppState::showPostExportDialogChanged}) {
        connect(&state_, signal, this, &MenuState::changed);
    }
    connect(&session_, &Session::hasDraftChanged, this, &MenuState::changed);
    connect(&leaving_, &Leaving::asksAboutExportChanged, this, &MenuState::changed);
}

bool MenuState::canAct() const {
    return state_.errorMessage().isEmpty() && !state_.showDefaultsScopePrompt() &&
           !state_.showCloseConfirmation() && !state_.showPostExportDialog() && !leaving_.asksAboutExport();
}

QString MenuState::exportTitle(std::size_t markedClips) {
    return markedClips == 0 ? QStringLiteral("Export…")
                            : QStringLiteral("Export %1 Marked Clips…").arg(markedClips);
}

QString MenuState::markTitle() const {
    return Texts::markLabel(session_.isEditingClip());
}

} // namespace zelvra
