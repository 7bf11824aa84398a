// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/journal/Journal.h"
#include "ZelvraApp/session/OpenClip.h"

#include <QFuture>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <qcoro/qcorotask.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace zelvra {

class RunMarker;

/// Keeps the user's work in the journal while the user works. A change is on the disk within a second, and
/// costs the main thread a copy of the work.
///
/// All access to the state folder is on one thread of its own, in the order in which it was asked for: a disk
/// that hangs stops neither the window nor the opening of movies. Main thread.
class WorkKeeper : public QObject {
    Q_OBJECT

public:
    /// What rows show of a movie's remembered work.
    struct Summary {
        std::size_t highlights = 0; ///< all of them, those in marked clips included
        std::size_t markedClips = 0;
        bool isExported = false;     ///< all of it, as it is now
        bool wasInterrupted = false; ///< it was open when the program was killed or crashed
        bool operator==(const Summary&) const = default;
    };

    explicit WorkKeeper(const std::filesystem::path& state, QObject* parent = nullptr);
    /// Writes what is due, for at most three seconds: a disk that hangs must not keep the program.
    ~WorkKeeper() override;

    /// The work on the clip has changed.
    void keep(const std::shared_ptr<const OpenClip>& clip);
    /// Writes what is due now, without waiting for it.
    void writeDue();
    /// What the journal knows of the movie, everything written before included; nullopt also if it cannot be
    /// read.
    QFuture<std::optional<Journal::Entry>> read(const MovieIdentity& identity);
    void forgetAll();

    /// The clip that is open now; an empty path if there is none. If the program does not end properly, the
    /// next run knows it from `interruptedClips`.
    void setOpenClip(const std::filesystem::path& clip);

    /// By the path at which each movie was last.
    const std::map<std::filesystem::path, Summary>& summaries() const { return summaries_; }
    /// The clips that were open when earlier runs were killed or crashed, and were not opened since.
    const std::vector<std::filesystem::path>& interruptedClips() const { return interrupted_; }
    /// The state folder cannot be written: nothing more is remembered.
    bool hasFailed() const { return hasFailed_; }

Q_SIGNALS:
    void summariesChanged();
    /// The first failure, as one line.
    void failed(const QString& line);

private:
    struct Known;

    template <class Work>
    void post(Work work);
    QCoro::Task<> reportFailure(QFuture<QString> working);
    void readWhatIsThere();
    QCoro::Task<> takeKnown(QFuture<Known> reading);
    bool wasInterrupted(const std::filesystem::path& movie) const;
    void setSummaries(std::map<std::filesystem::path, Summary> summaries);
    void takeNote(const std::filesystem::path& movie, const ClipWork& work);

    const std::filesystem::path state_;
    const Journal journal_;
    std::shared_ptr<std::unique_ptr<RunMarker>> marker_; ///< of the thread below
    std::unique_ptr<QThreadPool> thread_;
    QTimer timer_;
    std::map<const OpenClip*, std::shared_ptr<const OpenClip>> due_;
    std::map<std::filesystem::path, Summary> summaries_;
    std::vector<std::filesystem::path> interrupted_;
    bool hasFailed_ = false;
};

} // namespace zelvra
