// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/Exporter.h"

#include "ZelvraApp/session/Background.h"
#include "ZelvraCore/Render.h"

#include <QCoreApplication>
#include <QPointer>

#include <system_error>
#include <utility>

namespace zelvra {

namespace {

/// Makes the folder of the outputs, which is the same for all.
void prepareFolder(const std::vector<ExportJob>& jobs) {
    std::error_code error;
    std::filesystem::create_directories(jobs.front().output.parent_path(), error);
    if (error) {
        throw std::system_error(error);
    }
}

WrittenMovie write(const Asset& source, const ExportJob& job, const RenderOptions& options) {
    const std::filesystem::path file =
        renderHighlights(source, job.highlights, job.output, options).outputURL;
    return {file, std::filesystem::file_size(file)};
}

} // namespace

Exporter::Exporter(PreferenceStore& preferences, QObject* parent)
    : QObject(parent), preferences_(preferences) {}

Exporter::~Exporter() {
    stop_.request_stop();
}

QCoro::Task<Exporter::Outcome> Exporter::run(std::shared_ptr<OpenClip> clip) {
    setRunning(true);
    setProgress(0);
    QCoro::Task<Outcome> writing = writeMovies(std::move(clip));
    Outcome outcome = co_await writing;
    setRunning(false);
    co_return outcome;
}

QCoro::Task<Exporter::Outcome> Exporter::writeMovies(std::shared_ptr<OpenClip> clip) {
    const Annotations annotations = clip->work.annotations; // as they are exported
    const bool ofClips = !annotations.markedClips.empty();
    std::vector<ExportJob> jobs;
    try {
        auto plan = [source = clip->file, work = clip->work,
                     location = OutputLocation::loadFromUserDefaults(preferences_)] {
            std::vector<ExportJob> planned = planExport(source, work, location);
            prepareFolder(planned);
            return planned;
        };
        QCoro::Task<std::vector<ExportJob>> planning = inBackgroundFor(this, std::move(plan));
        jobs = co_await planning;
    } catch (const std::system_error& error) {
        co_return Outcome{
            .lastFile = {},
            .failure =
                tr("Couldn't create output folder: %1").arg(QString::fromStdString(error.code().message()))};
    }
    Outcome outcome;
    const double share = 1.0 / static_cast<double>(jobs.size());
    for (std::size_t index = 0; index < jobs.size(); ++index) {
        try {
            QCoro::Task<WrittenMovie> rendering =
                render(clip, jobs[index], static_cast<double>(index) * share, share);
            WrittenMovie written = co_await rendering;
            outcome.lastFile = written.file;
            clip->work.written.insert_or_assign(jobs[index].clipID, std::move(written));
        } catch (const std::exception& error) {
            const QString cause = QString::fromUtf8(error.what());
            co_return Outcome{.lastFile = {},
                              .failure = ofClips
                                             ? tr("Clip %1 failed: %2").arg(QString::number(index + 1), cause)
                                             : tr("Export failed: %1").arg(cause)};
        }
    }
    clip->work.exported.note(annotations);
    co_return outcome;
}

/// Renders one movie from the open asset, so that the index of a long recording is read once for all its
/// clips.
QCoro::Task<WrittenMovie> Exporter::render(std::shared_ptr<OpenClip> clip, ExportJob job, double start,
                                           double length) {
    RenderOptions options;
    options.sourceRange = job.range;
    // Read again for each movie: the user may change it between two clips.
    options.includeAudio = OutputLocation::loadFromUserDefaults(preferences_).includeAudio;
    options.stop = stop_.get_token();
    options.progress = [self = QPointer(this), start, length](double fraction) {
        const double overall = start + fraction * length;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, overall] {
                if (self) {
                    self->setProgress(overall);
                }
            },
            Qt::QueuedConnection);
    };
    auto work = [source = clip->asset, job = std::move(job), options = std::move(options)] {
        return write(*source, job, options);
    };
    QCoro::Task<WrittenMovie> rendering = inBackgroundFor(this, std::move(work));
    WrittenMovie written = co_await rendering;
    co_return written;
}

void Exporter::setRunning(bool on) {
    if (std::exchange(isRunning_, on) != on) {
        Q_EMIT isRunningChanged();
    }
}

void Exporter::setProgress(double progress) {
    if (std::exchange(progress_, progress) != progress) {
        Q_EMIT progressChanged();
    }
}

} // namespace zelvra
