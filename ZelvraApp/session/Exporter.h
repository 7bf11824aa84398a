// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/files/PreferenceStore.h"
#include "ZelvraApp/session/ExportPlan.h"
#include "ZelvraApp/session/OpenClip.h"

#include <QObject>
#include <QString>

#include <qcoro/qcorotask.h>

#include <memory>
#include <optional>
#include <stop_token>

namespace zelvra {

/// Writes the movies of one clip, one after another, and books into this clip what was written, whichever
/// clip is open by then.
///
/// Main thread; the engine works on another one. One export at a time. `preferences` outlives it. Its
/// destruction stops the engine within moments.
class Exporter : public QObject {
    Q_OBJECT

public:
    /// How an export ended: with its last movie, or with one line that gives the cause, or, if it was
    /// stopped, with neither. Movies that were finished before stay.
    struct Outcome {
        std::filesystem::path lastFile;
        QString failure;
    };

    explicit Exporter(PreferenceStore& preferences, QObject* parent = nullptr);
    ~Exporter() override;

    bool isRunning() const { return isRunning_; }
    /// From 0 to 1 over all movies.
    double progress() const { return progress_; }

    /// Exports the clip's work as it is now. Throws OwnerGone if the exporter is destroyed meanwhile.
    QCoro::Task<Outcome> run(std::shared_ptr<OpenClip> clip);

Q_SIGNALS:
    void isRunningChanged();
    void progressChanged();

private:
    QCoro::Task<Outcome> writeMovies(std::shared_ptr<OpenClip> clip);
    QCoro::Task<WrittenMovie> render(std::shared_ptr<OpenClip> clip, ExportJob job, double start,
                                     double length);
    void setRunning(bool on);
    void setProgress(double progress);

    PreferenceStore& preferences_;
    bool isRunning_ = false;
    double progress_ = 0;
    std::stop_source stop_;
};

} // namespace zelvra
