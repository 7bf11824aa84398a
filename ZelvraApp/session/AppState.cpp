// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"

#include "ZelvraApp/session/SavedDefaults.h"

namespace zelvra {

AppState::AppState(PreferenceStore& preferences, const ShellServices& services, QObject* parent)
    : QObject(parent),
      preferences_(preferences),
      services_(services),
      player_(std::make_unique<Player>()),
      recents_(RecentItem::loadFromUserDefaults(preferences)),
      sessionDefaults_(loadFromUserDefaults(preferences)),
      clipDefaults_(sessionDefaults_),
      lastSeenSavedDefaults_(sessionDefaults_) {
    previewTimer_.setSingleShot(true);
    previewTimer_.setTimerType(Qt::PreciseTimer);
    connect(&previewTimer_, &QTimer::timeout, this, &AppState::endHighlightPreview);
    connect(player_.get(), &Player::periodicTime, this, &AppState::observePlaybackTime);
    connect(player_.get(), &Player::itemFailed, this,
            [this](const QString& reason) { setErrorMessage(tr("Failed to load: %1").arg(reason)); });
    // Queued, so that a write of several preferences is complete when the session reads them.
    connect(&preferences_, &PreferenceStore::changed, this, &AppState::savedDefaultsMayHaveChanged,
            Qt::QueuedConnection);
}

AppState::~AppState() {
    exportStop_.request_stop();
}

void AppState::setErrorMessage(const QString& line) {
    publish(errorMessage_, line, &AppState::errorMessageChanged);
}

void AppState::observePlaybackTime(const CMTime& time) {
    const double previous = lastObservedTime_.seconds();
    lastObservedTime_ = time;
    publish(currentTime_, time, &AppState::currentTimeChanged);
    previewCrossing(previous, time);
}

void AppState::publishDerived() {
    const auto compare = [this](auto& known, auto now, Changed changed) {
        if (known != now) {
            known = std::move(now);
            Q_EMIT(this->*changed)();
        }
    };
    compare(derived_.canGoNext, canGoNext(), &AppState::canGoNextChanged);
    compare(derived_.queueLabel, queueLabel(), &AppState::queueLabelChanged);
    compare(derived_.isOpening, isOpening(), &AppState::isOpeningChanged);
    compare(derived_.isGrabbingFrame, isGrabbingFrame(), &AppState::isGrabbingFrameChanged);
    compare(derived_.timelineHasContent, timelineHasContent(), &AppState::timelineHasContentChanged);
    compare(derived_.canUndo, canUndo(), &AppState::canUndoChanged);
    compare(derived_.canRedo, canRedo(), &AppState::canRedoChanged);
    compare(derived_.canExport, canExport(), &AppState::canExportChanged);
}

} // namespace zelvra
