// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"

#include "ZelvraApp/session/Request.h"
#include "ZelvraApp/session/SavedDefaults.h"

namespace zelvra {

AppState::AppState(PreferenceStore& preferences, const ShellServices& services,
                   const std::filesystem::path& state, QObject* parent)
    : QObject(parent),
      preferences_(preferences),
      services_(services),
      player_(std::make_unique<Player>()),
      recents_(RecentItem::loadFromUserDefaults(preferences)),
      sessionDefaults_(loadFromUserDefaults(preferences)),
      lastSeenSavedDefaults_(sessionDefaults_),
      keeper_(state),
      exporter_(preferences) {
    previewTimer_.setSingleShot(true);
    previewTimer_.setTimerType(Qt::PreciseTimer);
    connect(&previewTimer_, &QTimer::timeout, this, &AppState::endHighlightPreview);
    connect(player_.get(), &Player::periodicTime, this, &AppState::observePlaybackTime);
    connect(player_.get(), &Player::itemFailed, this,
            [this](const QString& reason) { setErrorMessage(tr("Failed to load: %1").arg(reason)); });
    connect(&keeper_, &WorkKeeper::summariesChanged, this, &AppState::rememberedWorkChanged);
    connect(&keeper_, &WorkKeeper::failed, this, [this](const QString& line) {
        setErrorMessage(tr("Unfinished work can't be remembered: %1").arg(line));
    });
    connect(&exporter_, &Exporter::progressChanged, this, &AppState::exportProgressChanged);
    connect(&exporter_, &Exporter::isRunningChanged, this, [this] {
        Q_EMIT isExportingChanged();
        publishDerived();
    });
    // Queued, so that a write of several preferences is complete when the session reads them.
    connect(&preferences_, &PreferenceStore::changed, this, &AppState::savedDefaultsMayHaveChanged,
            Qt::QueuedConnection);
}

AppState::~AppState() = default;

std::optional<std::filesystem::path> AppState::videoFile() const {
    return clip_ ? std::optional(clip_->file) : std::nullopt;
}

std::optional<SourceInfo> AppState::sourceInfo() const {
    return clip_ ? std::optional(clip_->info) : std::nullopt;
}

void AppState::setErrorMessage(const QString& line) {
    publish(errorMessage_, line, &AppState::errorMessageChanged);
}

std::shared_ptr<const AppState::Request> AppState::begin(std::weak_ptr<const Request>& newest) {
    auto request = std::make_shared<const Request>(*this);
    newest = request;
    publishDerived();
    return request;
}

bool AppState::isNewest(const Request& request, const std::weak_ptr<const Request>& newest) {
    return newest.lock().get() == &request;
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
