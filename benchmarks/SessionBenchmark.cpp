// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/AppState.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <clocale>
#include <iostream>

namespace zelvra {
namespace {

/// Any movie; its content does not matter.
std::filesystem::path movie;

/// One update of the player's position (30 come each second) with that many highlights on the clip.
void observePlaybackTime(benchmark::State& state) {
    const QTemporaryDir folder;
    PreferenceStore preferences(folder.filePath("preferences.json").toStdString());
    AppState session(preferences, {}, folder.filePath("state").toStdString());
    QCoro::Task<> loading = session.load(movie);
    QCoro::waitFor(loading);
    const auto pixel =
        std::make_shared<const Image::Raster>(Image::Raster{1, 1, std::vector<std::uint8_t>(4)});
    for (int i = 0; i < state.range(0); ++i) {
        const Highlight highlight{Uuid::random(), sessionTime(1000 + i), sessionTime(3), {}};
        session.setDraft(HighlightDraft::editing(highlight, Image(pixel, {}), {1920, 1080}));
        session.commitDraft();
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

} // namespace
} // namespace zelvra

int main(int argc, char** argv) {
    qputenv("ZELVRA_AUDIO", "null");
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // required by libmpv
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::cerr << "usage: session-benchmark MOVIE\n";
        return 2;
    }
    zelvra::movie = argv[1];
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
