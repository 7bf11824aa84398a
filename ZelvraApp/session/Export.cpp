// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraCore/Render.h"

#include <QCoreApplication>
#include <QPointer>

namespace zelvra {

/// One file of an export.
struct AppState::ExportJob {
    std::shared_ptr<const Asset> source; ///< as it was when the export began
    std::vector<Highlight> highlights;
    std::optional<CMTimeRange> range;
    std::filesystem::path output;
    double progressStart = 0; ///< its part of the progress over all files
    double progressLength = 1;
};

bool AppState::canExport() const {
    return videoFile_ && !isExporting_ && (!markedClips_.empty() || !highlights_.empty());
}

QCoro::Task<> AppState::exportMovies() {
    if (!videoFile_ || isExporting_) {
        co_return;
    }
    cancelHighlightPreview();
    if (markedClips_.empty() && highlights_.empty()) {
        co_return;
    }
    QCoro::Task<> exporting = markedClips_.empty() ? exportSingleClip() : exportMarkedClips();
    co_await exporting;
}

QCoro::Task<> AppState::exportSingleClip() {
    const OutputLocation location = OutputLocation::loadFromUserDefaults(preferences_);
    ExportJob job{.source = asset_,
                  .highlights = highlights_,
                  .range = trimRange_,
                  .output = location.resolveOutputURL(*videoFile_)};
    if (!prepareOutputs({job.output}, false)) {
        co_return;
    }
    beginExporting();
    const QPointer<AppState> self(this);
    std::filesystem::path written;
    QString failure;
    try {
        QCoro::Task<std::filesystem::path> rendering = render(std::move(job));
        written = co_await rendering;
    } catch (const std::exception& error) {
        failure = exportFailure(QString::fromUtf8(error.what()));
    }
    if (!self) {
        co_return;
    }
    if (failure.isEmpty()) {
        finishExporting(std::move(written));
    } else {
        failExporting(failure);
    }
}

QCoro::Task<> AppState::exportMarkedClips() {
    const std::vector<MarkedClip> clips = markedClips_;
    const std::shared_ptr<const Asset> source = asset_;
    const OutputLocation location = OutputLocation::loadFromUserDefaults(preferences_);
    std::vector<std::filesystem::path> outputs;
    for (int number = 1; number <= static_cast<int>(clips.size()); ++number) {
        outputs.push_back(location.resolveOutputURL(*videoFile_, number));
    }
    if (!prepareOutputs(outputs, true)) {
        co_return;
    }
    beginExporting();
    const QPointer<AppState> self(this);
    const double share = 1.0 / static_cast<double>(clips.size());
    std::filesystem::path written;
    for (std::size_t k = 0; k < clips.size(); ++k) {
        ExportJob job{.source = source,
                      .highlights = clips[k].highlights,
                      .range = clips[k].range,
                      .output = outputs[k],
                      .progressStart = static_cast<double>(k) * share,
                      .progressLength = share};
        QString failure;
        try {
            QCoro::Task<std::filesystem::path> rendering = render(std::move(job));
            written = co_await rendering;
        } catch (const std::exception& error) {
            failure = clipFailure(k, QString::fromUtf8(error.what()));
        }
        if (!self) {
            co_return;
        }
        if (!failure.isEmpty()) {
            failExporting(failure);
            co_return;
        }
    }
    finishExporting(std::move(written));
}

QString AppState::exportFailure(const QString& cause) {
    return tr("Export failed: %1").arg(cause);
}

QString AppState::clipFailure(std::size_t index, const QString& cause) {
    return tr("Clip %1 failed: %2").arg(QString::number(index + 1), cause);
}

/// Checks, before any file is touched, that no output is the source itself. Then makes the folder, which is
/// the same for all outputs. With `ofClips`, an error message names the clip.
bool AppState::prepareOutputs(const std::vector<std::filesystem::path>& outputs, bool ofClips) {
    for (std::size_t k = 0; k < outputs.size(); ++k) {
        if (const auto line = refusalOfOutput(*videoFile_, outputs[k])) {
            const QString cause = QString::fromStdString(*line);
            setErrorMessage(ofClips ? clipFailure(k, cause) : exportFailure(cause));
            return false;
        }
    }
    std::error_code error;
    std::filesystem::create_directories(outputs.front().parent_path(), error);
    if (error) {
        setErrorMessage(tr("Couldn't create output folder: %1").arg(QString::fromStdString(error.message())));
        return false;
    }
    return true;
}

void AppState::beginExporting() {
    publish(isExporting_, true, &AppState::isExportingChanged);
    publish(exportProgress_, 0, &AppState::exportProgressChanged);
    setErrorMessage({});
    publish(lastExportFile_, std::nullopt, &AppState::lastExportURLChanged);
}

void AppState::finishExporting(std::filesystem::path lastFile) {
    publish(lastExportFile_, std::move(lastFile), &AppState::lastExportURLChanged);
    setShowPostExportDialog(true);
    publish(isExporting_, false, &AppState::isExportingChanged);
}

void AppState::failExporting(const QString& line) {
    setErrorMessage(line);
    publish(isExporting_, false, &AppState::isExportingChanged);
}

/// Renders one file from the open asset, so that the index of a long recording is read once for all its
/// clips. Throws what the engine throws.
QCoro::Task<std::filesystem::path> AppState::render(ExportJob job) {
    RenderOptions options;
    options.sourceRange = job.range;
    // Read again for each file: the user may change it between two clips.
    options.includeAudio = OutputLocation::loadFromUserDefaults(preferences_).includeAudio;
    options.stop = exportStop_.get_token();
    options.progress = [self = QPointer(this), start = job.progressStart,
                        length = job.progressLength](double fraction) {
        const double overall = start + fraction * length;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, overall] {
                if (self) {
                    self->publish(self->exportProgress_, overall, &AppState::exportProgressChanged);
                }
            },
            Qt::QueuedConnection);
    };
    auto work = [job = std::move(job), options = std::move(options)] {
        return renderHighlights(*job.source, job.highlights, job.output, options).outputURL;
    };
    QCoro::Task<std::filesystem::path> rendering = inBackground(std::move(work));
    std::filesystem::path written = co_await rendering;
    co_return written;
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
