// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace zelvra {

namespace {

/// The annotations of a document, on a movie of that length. What lies beyond its end is left out.
Annotations annotationsFor(const AnnotationsDocument& document, const CMTime& duration) {
    Annotations fitting = document.work.annotations;
    if (document.from || document.to) {
        fitting.trimRange = CMTimeRange::fromStartToEnd(document.from.value_or(CMTime::zero()),
                                                        document.to.value_or(duration));
    }
    const auto isBeyond = [&](const Highlight& highlight) { return highlight.timestamp > duration; };
    const auto fit = [&](const CMTimeRange& range) {
        return CMTimeRange::fromStartToEnd(range.start, minimum(range.end(), duration));
    };
    std::erase_if(fitting.highlights, isBeyond);
    std::erase_if(fitting.fullViewHighlights, isBeyond);
    std::erase_if(fitting.markedClips, [&](const MarkedClip& clip) { return clip.range.start >= duration; });
    for (MarkedClip& clip : fitting.markedClips) {
        clip.range = fit(clip.range);
        std::erase_if(clip.highlights, isBeyond);
    }
    if (fitting.trimRange) {
        fitting.trimRange =
            fitting.trimRange->start < duration ? std::optional(fit(*fitting.trimRange)) : std::nullopt;
    }
    return fitting;
}

} // namespace

/// Asks the journal what was left on the clip.
QCoro::Task<> AppState::lookForLeftWork(std::shared_ptr<OpenClip> clip) {
    QCoro::Task<std::optional<Journal::Entry>> reading =
        onBehalfOf(this, taskOf(keeper_.read(clip->identity)));
    const std::optional<Journal::Entry> entry = co_await reading;
    clip->journalHasAnswered = true;
    if (entry) {
        clip->work.written.insert(entry->work.written.begin(), entry->work.written.end());
        if (entry->work.annotations.hasContent() && remembersWork()) {
            clip->leftWork = entry->work;
            if (clip == clip_) {
                Q_EMIT leftWorkChanged();
            }
        }
    }
    if (clip->work.annotations.hasContent()) {
        keepWork(clip);
    }
}

void AppState::keepWork(const std::shared_ptr<OpenClip>& clip) {
    if (remembersWork()) {
        keeper_.keep(clip);
    }
}

std::optional<AppState::LeftWork> AppState::leftWork() const {
    if (!clip_ || !clip_->leftWork) {
        return std::nullopt;
    }
    return LeftWork{.highlights = static_cast<int>(clip_->leftWork->highlightCount()),
                    .markedClips = static_cast<int>(clip_->leftWork->annotations.markedClips.size())};
}

void AppState::restoreLeftWork() {
    if (!leftWork()) {
        return;
    }
    clip_->restoredWork = std::exchange(clip_->leftWork, std::nullopt);
    const ClipWork restored = merged(*clip_->restoredWork, clip_->work);
    clip_->work.exported = restored.exported;
    clip_->work.written = restored.written;
    setDefaults(sessionDefaults_, restored.defaults);
    edit(restored.annotations);
    Q_EMIT leftWorkChanged();
}

void AppState::dismissLeftWork() {
    if (leftWork()) {
        clip_->leftWork.reset();
        Q_EMIT leftWorkChanged();
    }
}

const WorkKeeper::Summary* AppState::rememberedWork(const std::filesystem::path& movie) const {
    const auto known = keeper_.summaries().find(movie);
    return known == keeper_.summaries().end() ? nullptr : &known->second;
}

bool AppState::remembersWork() const {
    return preferences_.read(preferences::rememberWork).value_or(true);
}

void AppState::forgetRememberedWork() {
    dismissLeftWork();
    keeper_.forgetAll();
}

void AppState::saveAnnotations() {
    if (!clip_ || !services_.savePanel) {
        return;
    }
    std::filesystem::path name = clip_->file;
    name.replace_filename(clip_->file.stem().string() + "_annotations.json");
    services_.savePanel->askForName({tr("Save"), tr("Choose where the annotations are saved."), name},
                                    [self = QPointer(this)](const std::filesystem::path& file) {
                                        if (self) {
                                            letRun(endingWithItsOwner(self->writeAnnotationsTo(file)));
                                        }
                                    });
}

QCoro::Task<> AppState::writeAnnotationsTo(std::filesystem::path file) {
    if (!clip_) {
        co_return;
    }
    AnnotationsDocument document;
    document.work.annotations = annotations();
    document.movie = MovieReference{clip_->file, clip_->identity};
    QString failure;
    try {
        auto write = [file, document = std::move(document)] {
            writeAnnotations(file, document);
            return true;
        };
        QCoro::Task<bool> writing = inBackgroundFor(this, std::move(write));
        co_await writing;
    } catch (const std::exception& error) {
        failure = tr("The annotations were not saved: %1").arg(QString::fromUtf8(error.what()));
    }
    if (!failure.isEmpty()) {
        setErrorMessage(failure);
    }
}

void AppState::openAnnotations() {
    if (!clip_ || !services_.openPanel) {
        return;
    }
    const OpenPanelRequest request{OpenPanelRequest::Choice::annotations, tr("Open"),
                                   tr("Choose a file of annotations.")};
    services_.openPanel->ask(request, [self = QPointer(this)](const std::filesystem::path& file) {
        if (self) {
            letRun(endingWithItsOwner(self->takeAnnotationsFrom(file)));
        }
    });
}

QCoro::Task<> AppState::takeAnnotationsFrom(std::filesystem::path file) {
    const std::shared_ptr<OpenClip> clip = clip_;
    if (!clip) {
        co_return;
    }
    AnnotationsDocument document;
    QString failure;
    try {
        auto read = [file] { return readAnnotations(file); };
        QCoro::Task<AnnotationsDocument> reading = inBackgroundFor(this, std::move(read));
        document = co_await reading;
    } catch (const std::exception& error) {
        failure = tr("The annotations were not opened: %1").arg(QString::fromUtf8(error.what()));
    }
    if (clip != clip_) {
        co_return;
    }
    if (!failure.isEmpty()) {
        setErrorMessage(failure);
        co_return;
    }
    const CMTime duration = clip->info.duration;
    ClipWork taken;
    taken.annotations = annotationsFor(document, duration);
    if (taken.highlightCount() != document.work.highlightCount() ||
        taken.annotations.markedClips.size() != document.work.annotations.markedClips.size()) {
        setErrorMessage(tr("Annotations beyond the end of “%1” were left out.").arg(nameOf(clip->file)));
    }
    edit(std::move(taken.annotations));
}

} // namespace zelvra
