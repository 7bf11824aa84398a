// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/FolderClips.h"
#include "ZelvraApp/session/Request.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/media/IdentifyMovie.h"

#include <QPointer>

namespace zelvra {

namespace {

std::shared_ptr<OpenClip> readClip(const std::filesystem::path& file) {
    auto clip = std::make_shared<OpenClip>();
    clip->file = file;
    clip->asset = std::make_shared<const Asset>(file);
    clip->info = loadSourceInfo(*clip->asset);
    clip->asset->frames(); // made here, as the player needs them on the main thread, which must not block
    clip->identity = media::identifyMovie(*clip->asset);
    return clip;
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
        letRun(endingWithItsOwner(openWhatIsThere(pathOf(urls.first().toLocalFile()), false)));
    }
}

void AppState::openRecent(const RecentItem& item) {
    letRun(endingWithItsOwner(openWhatIsThere(pathOf(item.path), true)));
}

/// Whether another clip may take the place of the open one. Else asks, and calls `then` once the user has
/// discarded the work.
bool AppState::mayReplaceClip(std::function<void()> then) {
    if (!closingLosesWork() || (remembersWork() && !keeper_.hasFailed())) {
        return true;
    }
    afterDiscarding_ = std::move(then);
    setShowCloseConfirmation(true);
    return false;
}

QCoro::Task<> AppState::openWhatIsThere(std::filesystem::path path, bool isRecent) {
    if (!mayReplaceClip(
            [this, path, isRecent] { letRun(endingWithItsOwner(openWhatIsThere(path, isRecent))); })) {
        co_return;
    }
    const std::shared_ptr<const Request> request = begin(opening_);
    auto look = [path] { return kindOf(path); };
    QCoro::Task<FileKind> looking = inBackgroundFor(this, std::move(look));
    const FileKind kind = co_await looking;
    if (!isNewest(*request, opening_)) {
        co_return;
    }
    if (kind == FileKind::missing && isRecent) {
        setRecents(forgetting(textOf(path), recents_));
        setErrorMessage(tr("“%1” can't be found. It may have been moved or deleted.").arg(nameOf(path)));
        co_return;
    }
    QCoro::Task<> opening = kind == FileKind::folder ? openFolder(path, *request) : openClip(path, *request);
    co_await opening;
}

QCoro::Task<> AppState::load(std::filesystem::path clip) {
    return endingWithItsOwner(loadAsked(std::move(clip)));
}

QCoro::Task<> AppState::loadAsked(std::filesystem::path clip) {
    if (!mayReplaceClip([this, clip] { letRun(load(clip)); })) {
        co_return;
    }
    const std::shared_ptr<const Request> request = begin(opening_);
    QCoro::Task<> opening = openClip(clip, *request);
    co_await opening;
}

QCoro::Task<> AppState::loadFolder(std::filesystem::path folder) {
    return endingWithItsOwner(loadFolderAsked(std::move(folder)));
}

QCoro::Task<> AppState::loadFolderAsked(std::filesystem::path folder) {
    if (!mayReplaceClip([this, folder] { letRun(loadFolder(folder)); })) {
        co_return;
    }
    const std::shared_ptr<const Request> request = begin(opening_);
    QCoro::Task<> opening = openFolder(folder, *request);
    co_await opening;
}

QCoro::Task<> AppState::openClip(std::filesystem::path clip, const Request& request) {
    ClipQueue queue = queue_;
    queue.follow(clip);
    setQueue(std::move(queue));
    QCoro::Task<bool> loading = loadClip(clip, request);
    const bool loaded = co_await loading;
    if (loaded) {
        noteRecent(clip, false);
    }
}

QCoro::Task<> AppState::openFolder(std::filesystem::path folder, const Request& request) {
    auto list = [folder] { return clipsIn(folder); };
    QCoro::Task<std::vector<std::filesystem::path>> listing = inBackgroundFor(this, std::move(list));
    std::vector<std::filesystem::path> clips = co_await listing;
    if (!isNewest(request, opening_)) {
        co_return;
    }
    if (clips.empty()) {
        setErrorMessage(tr("No .mov/.mp4/.m4v files found in “%1”.").arg(nameOf(folder)));
        co_return;
    }
    const std::filesystem::path first = clips.front();
    setQueue(ClipQueue(std::move(clips)));
    QCoro::Task<bool> loading = loadClip(first, request);
    const bool loaded = co_await loading;
    if (loaded || (clip_ && isNewest(request, opening_))) {
        noteRecent(folder, true);
    }
}

/// Opens a clip and shows it, if nothing else was asked for meanwhile. Returns whether it is open now.
QCoro::Task<bool> AppState::loadClip(std::filesystem::path clip, const Request& request) {
    cancelHighlightPreview();
    std::shared_ptr<OpenClip> next;
    QString failure;
    try {
        auto read = [clip] { return readClip(clip); };
        QCoro::Task<std::shared_ptr<OpenClip>> reading = inBackgroundFor(this, std::move(read));
        next = co_await reading;
    } catch (const std::exception& error) {
        failure = tr("Failed to load: %1").arg(QString::fromUtf8(error.what()));
    }
    if (!isNewest(request, opening_)) {
        co_return false;
    }
    if (!next) {
        setErrorMessage(failure);
        co_return false;
    }
    apply(next);
    setErrorMessage({});
    letRun(endingWithItsOwner(lookForLeftWork(next)));
    co_return true;
}

/// Shows another clip, or none. Everything that belonged to the clip before ends here; an export of it runs
/// on.
void AppState::apply(std::shared_ptr<OpenClip> clip) {
    cancelHighlightPreview();
    keeper_.writeDue();
    keeper_.setOpenClip(clip ? clip->file : std::filesystem::path());
    grabbing_.reset();
    setDraft(std::nullopt);
    pendingDefaults_.reset();
    setShowDefaultsScopePrompt(false);
    setShowPostExportDialog(false);
    const Annotations before = annotations();
    const HighlightDefaults defaultsBefore = clipDefaults();
    const std::optional<SourceInfo> infoBefore = sourceInfo();
    const bool offered = leftWork().has_value();
    clip_ = std::move(clip);
    if (clip_) {
        clip_->work.defaults = sessionDefaults_;
        player_->replaceCurrentItem(
            PlayerItem{.path = clip_->file, .asset = clip_->asset, .info = clip_->info});
    } else {
        player_->pause();
        player_->replaceCurrentItem(std::nullopt);
    }
    player_->setPeriodicTimeObservation(clip_ != nullptr);
    lastObservedTime_ = CMTime::zero();
    Q_EMIT videoURLChanged();
    if (!identical(infoBefore, sourceInfo())) {
        Q_EMIT sourceInfoChanged();
    }
    if (offered) {
        Q_EMIT leftWorkChanged();
    }
    notifyOfChanges(before);
    if (!identical(defaultsBefore, clipDefaults())) {
        Q_EMIT clipDefaultsChanged();
    }
    publish(currentTime_, CMTime::zero(), &AppState::currentTimeChanged);
    forgetLastExport();
}

void AppState::setQueue(ClipQueue queue) {
    const ClipQueue before = std::exchange(queue_, std::move(queue));
    if (before.clips() != queue_.clips()) {
        Q_EMIT clipQueueChanged();
    }
    if (before.index() != queue_.index()) {
        Q_EMIT queueIndexChanged();
    }
    publishDerived();
}

QString AppState::queueLabel() const {
    return queue_.clips().empty() ? QString()
                                  : tr("%1 of %2").arg(queue_.index() + 1).arg(queue_.clips().size());
}

QCoro::Task<> AppState::nextClip() {
    return endingWithItsOwner(goTo(queue_.next()));
}

QCoro::Task<> AppState::previousClip() {
    return endingWithItsOwner(goTo(queue_.previous()));
}

QCoro::Task<> AppState::goTo(std::optional<int> place) {
    if (!place || !mayReplaceClip([this, place] { letRun(endingWithItsOwner(goTo(place))); })) {
        co_return;
    }
    const std::shared_ptr<const Request> request = begin(opening_);
    ClipQueue queue = queue_;
    const std::filesystem::path clip = queue.goTo(*place);
    setQueue(std::move(queue));
    QCoro::Task<bool> loading = loadClip(clip, *request);
    co_await loading;
}

void AppState::noteRecent(const std::filesystem::path& path, bool isFolder) {
    setRecents(noting({textOf(path), isFolder}, recents_));
    if (services_.recentDocuments) {
        services_.recentDocuments->note(path);
    }
}

void AppState::clearRecents() {
    setRecents({});
}

void AppState::setRecents(std::vector<RecentItem> recents) {
    publish(recents_, std::move(recents), &AppState::recentsChanged);
    RecentItem::save(recents_, preferences_);
}

void AppState::setShowCloseConfirmation(bool on) {
    publish(showCloseConfirmation_, on, &AppState::showCloseConfirmationChanged);
}

void AppState::requestCloseVideo() {
    afterDiscarding_ = nullptr;
    if (closingLosesWork()) {
        setShowCloseConfirmation(true);
    } else {
        closeVideo();
    }
}

void AppState::keepClipOpen() {
    afterDiscarding_ = nullptr;
}

void AppState::closeAndDiscard() {
    const auto then = std::exchange(afterDiscarding_, nullptr);
    if (clip_) {
        clip_->work.exported = {};
        clip_->history = {};
        adopt({});
    }
    if (then) {
        then(); // the clip stays until the next one is there
    } else {
        closeVideo();
    }
}

void AppState::closeVideo() {
    opening_.reset(); // what is being opened is no longer wanted
    setQueue({});
    apply(nullptr);
    publishDerived();
}

} // namespace zelvra
