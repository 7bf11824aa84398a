// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"

namespace zelvra {

bool AppState::canExport() const {
    return clip_ && !isExporting() && (!markedClips().empty() || !highlights().empty());
}

QCoro::Task<> AppState::exportMovies() {
    return endingWithItsOwner(exportClip(clip_));
}

QCoro::Task<> AppState::exportClip(std::shared_ptr<OpenClip> clip) {
    if (!canExport()) {
        co_return;
    }
    cancelHighlightPreview();
    setErrorMessage({});
    forgetLastExport();
    QCoro::Task<Exporter::Outcome> exporting = exporter_.run(clip);
    const Exporter::Outcome outcome = co_await exporting;
    keepWork(clip);
    if (!outcome.failure.isEmpty()) {
        setErrorMessage(clip == clip_ ? outcome.failure
                                      : tr("“%1”: %2").arg(nameOf(clip->file), outcome.failure));
        co_return;
    }
    publish(lastExportFile_, outcome.lastFile, &AppState::lastExportURLChanged);
    setShowPostExportDialog(clip == clip_);
}

void AppState::setShowPostExportDialog(bool on) {
    publish(showPostExportDialog_, on, &AppState::showPostExportDialogChanged);
}

void AppState::closeAndOpenVideo() {
    closeVideo();
    setTriggerOpen(true);
}

void AppState::closeAndOpenFolder() {
    closeVideo();
    setTriggerOpenFolder(true);
}

void AppState::quit() {
    if (services_.terminator) {
        services_.terminator->terminate();
    }
}

void AppState::forgetLastExport() {
    publish(lastExportFile_, std::nullopt, &AppState::lastExportURLChanged);
}

void AppState::revealLastExport() {
    if (services_.fileViewer && lastExportFile_) {
        services_.fileViewer->reveal(*lastExportFile_);
    }
}

} // namespace zelvra
