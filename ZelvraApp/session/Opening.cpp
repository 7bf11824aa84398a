// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/files/NaturalOrder.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/Underway.h"
#include "ZelvraCore/SourceProbe.h"

#include <QPointer>

#include <algorithm>

namespace zelvra {

namespace {

enum class FileKind { missing, folder, other };

FileKind kindOf(const std::filesystem::path& path) {
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::status(path, unknown);
    if (!std::filesystem::exists(status)) {
        return FileKind::missing;
    }
    return std::filesystem::is_directory(status) ? FileKind::folder : FileKind::other;
}

bool isMovieName(const std::filesystem::path& path) {
    const QString extension = textOf(path.extension()).toLower();
    return extension == QLatin1String(".mov") || extension == QLatin1String(".mp4") ||
           extension == QLatin1String(".m4v");
}

/// A folder's clips in the order in which they are worked through; none if the folder cannot be read.
std::vector<std::filesystem::path> clipsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> clips;
    std::error_code unreadable;
    std::filesystem::directory_iterator entry(folder, unreadable);
    for (; !unreadable && entry != std::filesystem::directory_iterator(); entry.increment(unreadable)) {
        if (isMovieName(entry->path())) {
            clips.push_back(entry->path());
        }
    }
    // A folder is listed in no fixed order. Names that are naturally equal must not change places each time.
    std::ranges::sort(clips);
    sortInNaturalOrder(clips);
    return clips;
}

struct OpenedMovie {
    std::shared_ptr<const Asset> asset;
    SourceInfo info;
};

OpenedMovie openMovie(const std::filesystem::path& clip) {
    auto asset = std::make_shared<const Asset>(clip);
    SourceInfo info = loadSourceInfo(*asset);
    asset->frames(); // made here, as the player needs them on the main thread, which must not block
    return {std::move(asset), info};
}

} // namespace

void AppState::setTriggerOpen(bool on) {
    publish(triggerOpen_, on, &AppState::triggerOpenChanged);
}

void AppState::setTriggerOpenFolder(bool on) {
    publish(triggerOpenFolder_, on, &AppState::triggerOpenFolderChanged);
}

void AppState::presentOpenVideoPanel() {
    if (!services_.openPanel) {
        return;
    }
    const OpenPanelRequest request{OpenPanelRequest::Choice::movie, tr("Open"),
                                   tr("Choose a video clip to annotate.")};
    services_.openPanel->ask(request, [self = QPointer(this)](const std::filesystem::path& clip) {
        if (self) {
            letRun(self->load(clip));
        }
    });
}

void AppState::presentOpenFolderPanel() {
    if (!services_.openPanel) {
        return;
    }
    const OpenPanelRequest request{OpenPanelRequest::Choice::folder, tr("Open Folder"),
                                   tr("Choose a folder of clips to work through in order.")};
    services_.openPanel->ask(request, [self = QPointer(this)](const std::filesystem::path& folder) {
        if (self) {
            letRun(self->loadFolder(folder));
        }
    });
}

void AppState::handleOpenedURLs(const QList<QUrl>& urls) {
    if (!urls.isEmpty()) {
        letRun(openWhatIsThere(pathOf(urls.first().toLocalFile())));
    }
}

QCoro::Task<> AppState::openWhatIsThere(std::filesystem::path path) {
    const QPointer<AppState> self(this);
    auto look = [path] { return kindOf(path); };
    QCoro::Task<FileKind> looking = inBackground(std::move(look));
    const FileKind kind = co_await looking;
    if (!self) {
        co_return;
    }
    QCoro::Task<> opening = kind == FileKind::folder ? loadFolder(path) : load(path);
    co_await opening;
}

QCoro::Task<> AppState::load(std::filesystem::path clip) {
    const auto queued = std::ranges::find(clipQueue_, clip);
    if (queued != clipQueue_.end()) {
        publish(queueIndex_, static_cast<int>(queued - clipQueue_.begin()), &AppState::queueIndexChanged);
    } else {
        publish(clipQueue_, {}, &AppState::clipQueueChanged);
        publish(queueIndex_, 0, &AppState::queueIndexChanged);
    }
    const QPointer<AppState> self(this);
    QCoro::Task<> loading = loadClip(clip);
    co_await loading;
    if (self && videoFile_ == clip) {
        noteRecent(clip, false);
    }
}

QCoro::Task<> AppState::loadClip(std::filesystem::path clip) {
    const QPointer<AppState> self(this);
    cancelHighlightPreview();
    const Underway underway(*this, &AppState::openingsUnderway_);
    OpenedMovie movie;
    QString failure;
    try {
        auto open = [clip] { return openMovie(clip); };
        QCoro::Task<OpenedMovie> opening = inBackground(std::move(open));
        movie = co_await opening;
    } catch (const std::exception& error) {
        failure = tr("Failed to load: %1").arg(QString::fromUtf8(error.what()));
    }
    if (!self) {
        co_return;
    }
    if (!failure.isEmpty()) {
        setErrorMessage(failure);
        co_return;
    }
    asset_ = movie.asset;
    player_->replaceCurrentItem(PlayerItem{.path = clip, .asset = movie.asset, .info = movie.info});
    player_->setPeriodicTimeObservation(true);
    publish(videoFile_, clip, &AppState::videoURLChanged);
    publish(sourceInfo_, movie.info, &AppState::sourceInfoChanged);
    setErrorMessage({});
    forgetAnnotations();
}

/// Everything that belongs to one clip and not to the next.
void AppState::forgetAnnotations() {
    publish(highlights_, {}, &AppState::highlightsChanged);
    clearUndoHistory();
    publish(currentTime_, CMTime::zero(), &AppState::currentTimeChanged);
    publish(lastExportFile_, std::nullopt, &AppState::lastExportURLChanged);
    publish(trimRange_, std::nullopt, &AppState::trimRangeChanged);
    publish(markedClips_, {}, &AppState::markedClipsChanged);
    publish(activeRoughClipID_, std::nullopt, &AppState::activeRoughClipIDChanged);
    publish(editingClipID_, std::nullopt, &AppState::editingClipIDChanged);
    publish(clipDefaults_, sessionDefaults_, &AppState::clipDefaultsChanged);
}

QCoro::Task<> AppState::loadFolder(std::filesystem::path folder) {
    const QPointer<AppState> self(this);
    const Underway underway(*this, &AppState::openingsUnderway_);
    auto list = [folder] { return clipsIn(folder); };
    QCoro::Task<std::vector<std::filesystem::path>> listing = inBackground(std::move(list));
    std::vector<std::filesystem::path> clips = co_await listing;
    if (!self) {
        co_return;
    }
    if (clips.empty()) {
        setErrorMessage(tr("No .mov/.mp4/.m4v files found in “%1”.").arg(nameOf(folder)));
        co_return;
    }
    const std::filesystem::path first = clips.front();
    publish(clipQueue_, std::move(clips), &AppState::clipQueueChanged);
    publish(queueIndex_, 0, &AppState::queueIndexChanged);
    QCoro::Task<> loading = loadClip(first);
    co_await loading;
    if (self && videoFile_) {
        noteRecent(folder, true);
    }
}

QString AppState::queueLabel() const {
    return clipQueue_.empty() ? QString() : tr("%1 of %2").arg(queueIndex_ + 1).arg(clipQueue_.size());
}

QCoro::Task<> AppState::nextClip() {
    if (!canGoNext()) {
        co_return;
    }
    publish(queueIndex_, queueIndex_ + 1, &AppState::queueIndexChanged);
    QCoro::Task<> loading = loadClip(clipQueue_[static_cast<std::size_t>(queueIndex_)]);
    co_await loading;
}

QCoro::Task<> AppState::previousClip() {
    if (queueIndex_ < 1) {
        co_return;
    }
    publish(queueIndex_, queueIndex_ - 1, &AppState::queueIndexChanged);
    QCoro::Task<> loading = loadClip(clipQueue_[static_cast<std::size_t>(queueIndex_)]);
    co_await loading;
}

void AppState::noteRecent(const std::filesystem::path& path, bool isFolder) {
    publish(recents_, noting({textOf(path), isFolder}, recents_), &AppState::recentsChanged);
    RecentItem::save(recents_, preferences_);
    if (services_.recentDocuments) {
        services_.recentDocuments->note(path);
    }
}

void AppState::clearRecents() {
    publish(recents_, {}, &AppState::recentsChanged);
    RecentItem::save(recents_, preferences_);
}

void AppState::openRecent(const RecentItem& item) {
    letRun(openOrForget(item));
}

QCoro::Task<> AppState::openOrForget(RecentItem item) {
    const QPointer<AppState> self(this);
    const std::filesystem::path path = pathOf(item.path);
    auto look = [path] { return kindOf(path); };
    QCoro::Task<FileKind> looking = inBackground(std::move(look));
    const FileKind kind = co_await looking;
    if (!self) {
        co_return;
    }
    if (kind == FileKind::missing) {
        publish(recents_, forgetting(item.path, recents_), &AppState::recentsChanged);
        RecentItem::save(recents_, preferences_);
        setErrorMessage(tr("“%1” can't be found. It may have been moved or deleted.").arg(nameOf(path)));
        co_return;
    }
    QCoro::Task<> opening = kind == FileKind::folder ? loadFolder(path) : load(path);
    co_await opening;
}

void AppState::setShowCloseConfirmation(bool on) {
    publish(showCloseConfirmation_, on, &AppState::showCloseConfirmationChanged);
}

bool AppState::closingLosesWork() const {
    return (!highlights_.empty() || !markedClips_.empty()) && !lastExportFile_;
}

void AppState::requestCloseVideo() {
    if (closingLosesWork()) {
        setShowCloseConfirmation(true);
    } else {
        closeVideo();
    }
}

void AppState::closeVideo() {
    cancelHighlightPreview();
    player_->pause();
    player_->replaceCurrentItem(std::nullopt);
    player_->setPeriodicTimeObservation(false);
    asset_.reset();
    publish(videoFile_, std::nullopt, &AppState::videoURLChanged);
    publish(sourceInfo_, std::nullopt, &AppState::sourceInfoChanged);
    publish(draft_, std::nullopt, &AppState::draftChanged);
    publish(clipQueue_, {}, &AppState::clipQueueChanged);
    publish(queueIndex_, 0, &AppState::queueIndexChanged);
    forgetAnnotations();
}

} // namespace zelvra
