// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/AppState.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace zelvra {
namespace {

/// Any movie; its content does not matter.
std::filesystem::path movie;

void addHighlight(AppState& session, double seconds) {
    static const auto pixel =
        std::make_shared<const Image::Raster>(Image::Raster{1, 1, std::vector<std::uint8_t>(4)});
    const Highlight highlight{Uuid::random(), sessionTime(seconds), sessionTime(3), {}};
    session.setDraft(HighlightDraft::editing(highlight, Image(pixel, {}), {1920, 1080}));
    session.commitDraft();
}

/// One update of the player's position (30 come each second) with that many highlights on the clip.
void observePlaybackTime(benchmark::State& state) {
    const QTemporaryDir folder;
    PreferenceStore preferences(folder.filePath("preferences.json").toStdString());
    AppState session(preferences, {}, folder.filePath("state").toStdString());
    QCoro::Task<> loading = session.load(movie);
    QCoro::waitFor(loading);
    for (int i = 0; i < state.range(0); ++i) {
        addHighlight(session, 1000 + i);
    }
    session.player().play();
    if (!(session.player().rate() > 0)) {
        state.SkipWithError("the movie does not play");
        return;
    }
    std::int64_t tick = 0;
    for (auto _ : state) {
        session.observePlaybackTime(CMTime(++tick, 30)); // passes no highlight, so all are examined
        tick %= 3000;
    }
}
BENCHMARK(observePlaybackTime)->Arg(10)->Arg(1000);

/// A session with 300 marked clips and 300 highlights on the movie, and a trim that has an edge to nudge.
class MarkedMovie {
public:
    MarkedMovie() {
        QCoro::Task<> loading = session_.load(movie);
        QCoro::waitFor(loading);
        runUntil([&] { return session_.player().isReady() && session_.leftWorkIsKnown(); });
        for (int i = 0; i < 300; ++i) {
            session_.markInPoint();
            addHighlight(session_, session_.sourceInfo()->duration.seconds() * (i + 1) / 301);
        }
        session_.setTrim(CMTimeRange{CMTime::zero(), session_.sourceInfo()->duration});
        runUntil([&] { return findDocument(); });
    }

    AppState& session() { return session_; }

    /// In milliseconds.
    struct Cost {
        double mainThread; ///< processor time of the change and of what follows until it is on the disk
        double disk;       ///< time until then
    };
    Cost costOf(const std::function<void()>& change) {
        const auto before = std::filesystem::last_write_time(document_);
        QElapsedTimer time;
        time.start();
        const double processor = processorMs();
        change();
        runUntil([&] { return std::filesystem::last_write_time(document_) != before; });
        return {processorMs() - processor, static_cast<double>(time.nsecsElapsed()) / 1e6};
    }

private:
    static double processorMs() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }
    /// The end of a write is an event too.
    static void runUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    bool findDocument() {
        std::error_code notYet;
        for (const auto& entry : std::filesystem::directory_iterator(state_ / "journal", notYet)) {
            if (entry.path().extension() == ".json") {
                document_ = entry.path();
            }
        }
        return !document_.empty();
    }

    const QTemporaryDir folder_;
    const std::filesystem::path state_ = folder_.filePath("state").toStdString();
    PreferenceStore preferences_{folder_.filePath("preferences.json").toStdString()};
    AppState session_{preferences_, {}, state_};
    std::filesystem::path document_; ///< of the movie, in the journal
};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Prints the median costs for the main thread of a new highlight, a nudge of a trim edge and an undo, then
/// the median and the longest time from a change until it is on the disk; in milliseconds. At most 50 rounds,
/// as so many steps can be undone.
void timeChanges(int rounds) {
    MarkedMovie marked;
    AppState& session = marked.session();
    double edge = 0;
    const std::function<void()> changes[] = {[&] { addHighlight(session, 1); },
                                             [&] {
                                                 session.pushUndo();
                                                 session.dragTrimStart(edge += 0.01);
                                             },
                                             [&] { session.undo(); }};
    std::vector<double> disk;
    for (const auto& change : changes) {
        std::vector<double> mainThread;
        for (int round = 0; round < rounds; ++round) {
            const MarkedMovie::Cost cost = marked.costOf(change);
            mainThread.push_back(cost.mainThread);
            disk.push_back(cost.disk);
        }
        std::printf("%.3f ", median(mainThread));
    }
    std::printf("%.0f %.0f\n", median(disk), std::ranges::max(disk));
}

} // namespace
} // namespace zelvra

int main(int argc, char** argv) {
    qputenv("ZELVRA_AUDIO", "null");
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // required by libmpv
    benchmark::Initialize(&argc, argv);
    if (argc == 2) {
        zelvra::movie = argv[1];
        benchmark::RunSpecifiedBenchmarks();
    } else if (argc == 4 && std::string(argv[1]) == "changes") {
        zelvra::movie = argv[2];
        zelvra::timeChanges(std::atoi(argv[3]));
    } else {
        std::cerr << "usage: session-benchmark MOVIE | changes MOVIE ROUNDS\n";
        return 2;
    }
    return 0;
}
