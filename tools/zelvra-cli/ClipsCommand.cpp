// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/ClipsCommand.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraCore/records/ZVError.h"
#include "tools/zelvra-cli/Annotations.h"
#include "tools/zelvra-cli/HighlightText.h"
#include "tools/zelvra-cli/Interrupt.h"
#include "tools/zelvra-cli/ProgressReport.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <clocale>
#include <iostream>
#include <stdexcept>

namespace zelvra::cli {
namespace {

/// Where the clips go, as preferences that only this run sees.
PreferenceStore::Changes placesOf(const ClipsRequest& request, const Annotations& annotations) {
    PreferenceStore::Changes changes;
    const std::string mode = request.mode.value_or(request.folder ? "custom" : "subfolder");
    changes.set(preferences::outputMode, QString::fromStdString(mode));
    if (request.folder) {
        changes.set(preferences::outputCustomFolderPath, textOf(std::filesystem::absolute(*request.folder)));
    }
    if (request.subfolder) {
        changes.set(preferences::outputSubfolderName, QString::fromStdString(*request.subfolder));
    }
    changes.set(preferences::outputIncludeAudio, annotations.includeAudio.value_or(true));
    return changes;
}

void mark(AppState& session, const AnnotatedClip& clip) {
    // The session takes highlights from its editor, which has the frame before its eyes; none is needed here.
    static const auto noRaster =
        std::make_shared<const Image::Raster>(Image::Raster{1, 1, std::vector<std::uint8_t>(4)});
    session.setTrim(CMTimeRange::fromStartToEnd(clip.start, clip.end));
    for (const Highlight& highlight : clip.highlights) {
        session.setDraft(
            HighlightDraft::editing(highlight, Image(noRaster, {}), session.sourceInfo()->displaySize));
        session.commitDraft();
    }
    session.markCurrentClip();
}

void throwFailure(const AppState& session) {
    if (!session.errorMessage().isEmpty()) {
        throw std::runtime_error(session.errorMessage().toStdString());
    }
}

/// Waits for what the session does, unless the user interrupts it.
void await(QCoro::Task<> task, const Interrupt& interrupt) {
    QCoro::waitFor(task);
    if (interrupt.token().stop_requested()) {
        throw MediaError(MediaError::Cause::cancelled, "cancelled");
    }
}

/// Cleaning up is the workers' part, also when a session is left early.
struct WorkersEnd {
    WorkersEnd() = default;
    WorkersEnd(const WorkersEnd&) = delete;
    WorkersEnd& operator=(const WorkersEnd&) = delete;
    ~WorkersEnd() { finishWorkers(); }
};

} // namespace

void clipsCommand(const ClipsRequest& request) {
    const Annotations annotations = readAnnotations(request.annotations);
    if (annotations.clips.empty()) {
        throw BadRequest(request.annotations.string() + ": no clips");
    }
    const Interrupt interrupt;
    qputenv("ZELVRA_AUDIO", "null");
    int argc = 1;
    char name[] = "zelvra-cli";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // what the player's core insists on
    const std::stop_callback endEarly(interrupt.token(), [] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    });

    const QTemporaryDir own;
    PreferenceStore preferences(pathOf(own.filePath(QStringLiteral("preferences.json"))));
    preferences.write(placesOf(request, annotations));
    const WorkersEnd workersEnd; // after the session, which tells its export to stop
    AppState session(preferences);
    await(session.load(std::filesystem::absolute(request.movie)), interrupt);
    throwFailure(session);
    for (const AnnotatedClip& clip : annotations.clips) {
        mark(session, clip);
    }
    {
        ProgressReport report(std::cerr, progressStyle(request.quiet));
        const auto reporting = QObject::connect(&session, &AppState::exportProgressChanged, &session,
                                                [&] { report.update(session.exportProgress()); });
        await(session.exportMovies(), interrupt);
        QObject::disconnect(reporting);
    }
    throwFailure(session);
    const OutputLocation location = OutputLocation::loadFromUserDefaults(preferences);
    for (int number = 1; number <= static_cast<int>(annotations.clips.size()); ++number) {
        std::cout << location.resolveOutputURL(*session.videoFile(), number).string() << '\n';
    }
}

} // namespace zelvra::cli
