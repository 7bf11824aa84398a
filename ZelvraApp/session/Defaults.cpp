// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/SavedDefaults.h"

namespace zelvra {

void AppState::setShowDefaultsScopePrompt(bool on) {
    publish(showDefaultsScopePrompt_, on, &AppState::showDefaultsScopePromptChanged);
}

void AppState::applyPendingDefaults(DefaultsScope scope) {
    if (!pendingDefaults_) {
        return;
    }
    const HighlightDefaults style = *std::exchange(pendingDefaults_, std::nullopt);
    publish(clipDefaults_, style, &AppState::clipDefaultsChanged);
    if (scope != DefaultsScope::justThisClip) {
        publish(sessionDefaults_, style, &AppState::sessionDefaultsChanged);
    }
    if (scope == DefaultsScope::always) {
        save(style, preferences_);
        lastSeenSavedDefaults_ = style;
    }
}

void AppState::savedDefaultsMayHaveChanged() {
    const HighlightDefaults saved = loadFromUserDefaults(preferences_);
    if (saved == lastSeenSavedDefaults_) {
        return;
    }
    lastSeenSavedDefaults_ = saved;
    publish(sessionDefaults_, saved, &AppState::sessionDefaultsChanged);
    publish(clipDefaults_, saved, &AppState::clipDefaultsChanged);
}

} // namespace zelvra
