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
    setDefaults(scope == DefaultsScope::justThisClip ? sessionDefaults_ : style, style);
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
    setDefaults(saved, saved);
}

void AppState::setDefaults(const HighlightDefaults& ofSession, const HighlightDefaults& ofClip) {
    const HighlightDefaults clipBefore = clipDefaults();
    publish(sessionDefaults_, ofSession, &AppState::sessionDefaultsChanged);
    if (clip_) {
        clip_->work.defaults = ofClip;
        keepWork(clip_);
    }
    if (!identical(clipBefore, clipDefaults())) {
        Q_EMIT clipDefaultsChanged();
    }
}

} // namespace zelvra
