// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/MenuState.h"

#include "ZelvraApp/views/Texts.h"

namespace zelvra {

MenuState::MenuState(const Session& session, const Dialogs& dialogs, const Leaving& leaving, QObject* parent)
    : QObject(parent), session_(session), state_(*session.state()), dialogs_(dialogs), leaving_(leaving) {
    for (const auto signal :
         {&AppState::videoURLChanged, &AppState::recentsChanged, &AppState::canExportChanged,
          &AppState::markedClipsChanged, &AppState::canUndoChanged, &AppState::canRedoChanged,
          &AppState::trimRangeChanged, &AppState::editingClipIDChanged, &AppState::queueIndexChanged,
          &AppState::canGoNextChanged, &AppState::leftWorkChanged}) {
        connect(&state_, signal, this, &MenuState::changed);
    }
    connect(&dialogs_, &Dialogs::changed, this, &MenuState::changed); // the editor's coming and going too
    connect(&leaving_, &Leaving::asksAboutExportChanged, this, &MenuState::changed);
}

QString MenuState::exportTitle(std::size_t markedClips) {
    return markedClips == 0 ? tr("Export…")
                            : tr("Export %n Marked Clips…", nullptr, static_cast<int>(markedClips));
}

QString MenuState::markTitle() const {
    return Texts::markLabel(session_.isEditingClip());
}

} // namespace zelvra
