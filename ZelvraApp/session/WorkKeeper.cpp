// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/WorkKeeper.h"

#include "ZelvraApp/journal/RunMarker.h"
#include "ZelvraApp/session/Background.h"

#include <QtConcurrentRun>

#include <algorithm>
#include <exception>
#include <tuple>

namespace zelvra {

namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

/// From a change to its write. With the write itself well below a second.
constexpr std::chrono::milliseconds delay = 300ms;
constexpr std::chrono::seconds patience = 3s;

WorkKeeper::Summary summaryOf(const ClipWork& work) {
    return {.highlights = work.highlightCount(),
            .markedClips = work.annotations.markedClips.size(),
            .isExported = !work.hasUnexportedWork(),
            .wasInterrupted = false};
}

} // namespace

/// What the state folder holds when the program starts.
struct WorkKeeper::Known {
    std::vector<std::filesystem::path> interrupted;
    std::vector<Journal::Summary> entries;
};

WorkKeeper::WorkKeeper(const std::filesystem::path& state, QObject* parent)
    : QObject(parent),
      state_(state),
      journal_(state),
      marker_(std::make_shared<std::unique_ptr<RunMarker>>()),
      thread_(std::make_unique<QThreadPool>()) {
    thread_->setMaxThreadCount(1);
    timer_.setSingleShot(true);
    timer_.setInterval(delay);
    connect(&timer_, &QTimer::timeout, this, &WorkKeeper::writeDue);
    readWhatIsThere();
}

WorkKeeper::~WorkKeeper() {
    writeDue();
    post([marker = marker_] { marker->reset(); });
    if (!thread_->waitForDone(static_cast<int>(std::chrono::milliseconds(patience).count()))) {
        std::ignore = thread_.release(); // its destructor would wait without limit
    }
}

/// Runs `work` on the thread, after everything posted before. The first exception is reported.
template <class Work>
void WorkKeeper::post(Work work) {
    auto run = [work = std::move(work)] {
        try {
            work();
            return QString();
        } catch (const std::exception& error) {
            return QString::fromUtf8(error.what());
        }
    };
    letRun(endingWithItsOwner(reportFailure(QtConcurrent::run(thread_.get(), std::move(run)))));
}

QCoro::Task<> WorkKeeper::reportFailure(QFuture<QString> working) {
    QCoro::Task<QString> awaited = onBehalfOf(this, taskOf(std::move(working)));
    const QString line = co_await awaited;
    if (!line.isEmpty() && !std::exchange(hasFailed_, true)) {
        Q_EMIT failed(line);
    }
}

void WorkKeeper::readWhatIsThere() {
    auto read = [state = state_, journal = journal_] {
        Known known;
        known.interrupted = RunMarker::leftBehind(state);
        try {
            known.entries = journal.entries();
        } catch (const std::exception&) { // nothing is known then; the first write reports the cause
        }
        return known;
    };
    letRun(endingWithItsOwner(takeKnown(QtConcurrent::run(thread_.get(), std::move(read)))));
}

QCoro::Task<> WorkKeeper::takeKnown(QFuture<Known> reading) {
    QCoro::Task<Known> awaited = onBehalfOf(this, taskOf(std::move(reading)));
    const Known known = co_await awaited;
    interrupted_ = known.interrupted;
    for (const Journal::Summary& entry : known.entries) {
        summaries_.try_emplace(entry.movie, Summary{.highlights = entry.highlights,
                                                    .markedClips = entry.markedClips,
                                                    .isExported = !entry.hasUnexportedWork,
                                                    .wasInterrupted = wasInterrupted(entry.movie)});
    }
    Q_EMIT summariesChanged();
}

bool WorkKeeper::wasInterrupted(const std::filesystem::path& movie) const {
    return std::ranges::find(interrupted_, movie) != interrupted_.end();
}

void WorkKeeper::keep(const std::shared_ptr<const OpenClip>& clip) {
    due_.insert_or_assign(clip.get(), clip);
    if (!timer_.isActive()) {
        timer_.start();
    }
}

void WorkKeeper::writeDue() {
    timer_.stop();
    for (const auto& [key, clip] : std::exchange(due_, {})) {
        const ClipWork work = clip->leftWork ? merged(*clip->leftWork, clip->work) : clip->work;
        takeNote(clip->file, work);
        // Before the journal has answered, what it knows is still to be added.
        post([journal = journal_, identity = clip->identity, file = clip->file, work,
              isAlone = clip->journalHasAnswered] {
            const auto known = isAlone ? std::nullopt : journal.read(identity);
            journal.write(identity, file, known ? merged(known->work, work) : work);
        });
    }
}

void WorkKeeper::takeNote(const std::filesystem::path& movie, const ClipWork& work) {
    std::map<std::filesystem::path, Summary> after = summaries_;
    if (work.annotations.hasContent()) {
        after.insert_or_assign(movie, summaryOf(work));
    } else {
        after.erase(movie);
    }
    setSummaries(std::move(after));
}

void WorkKeeper::setSummaries(std::map<std::filesystem::path, Summary> summaries) {
    if (std::exchange(summaries_, std::move(summaries)) != summaries_) {
        Q_EMIT summariesChanged();
    }
}

QFuture<std::optional<Journal::Entry>> WorkKeeper::read(const MovieIdentity& identity) {
    return QtConcurrent::run(thread_.get(),
                             [journal = journal_, identity]() -> std::optional<Journal::Entry> {
                                 try {
                                     return journal.read(identity);
                                 } catch (const std::exception&) { // the first write reports the cause
                                     return std::nullopt;
                                 }
                             });
}

void WorkKeeper::forgetAll() {
    due_.clear();
    timer_.stop();
    post([journal = journal_] { journal.forgetAll(); });
    interrupted_.clear();
    setSummaries({});
}

void WorkKeeper::setOpenClip(const std::filesystem::path& clip) {
    post([marker = marker_, state = state_, clip] {
        if (!*marker) {
            *marker = std::make_unique<RunMarker>(state);
        }
        (*marker)->setClip(clip);
    });
    if (std::erase(interrupted_, clip) > 0) {
        const auto known = summaries_.find(clip);
        if (known != summaries_.end()) {
            known->second.wasInterrupted = false;
        }
        Q_EMIT summariesChanged();
    }
}

} // namespace zelvra
