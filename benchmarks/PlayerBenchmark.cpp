// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/AppState.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <mpv/client.h>
#include <string>
#include <sys/resource.h>
#include <vector>

// Times the opening of a clip, from the call to the first picture, alternating between the session (probe,
// index, player) and a bare libmpv that only loads the clip. Prints both medians in milliseconds.

namespace zelvra {
namespace {

double oursMs(AppState& session, const std::filesystem::path& movie) {
    QEventLoop loop;
    QObject::connect(&session.player(), &Player::itemReady, &loop, &QEventLoop::quit);
    QElapsedTimer time;
    time.start();
    QCoro::Task<> loading = session.load(movie);
    loop.exec();
    const double taken = static_cast<double>(time.nsecsElapsed()) / 1e6;
    QCoro::waitFor(loading);
    session.closeVideo();
    return taken;
}

double mpvMs(mpv_handle* mpv, const char* movie) {
    QElapsedTimer time;
    time.start();
    const char* load[] = {"loadfile", movie, nullptr};
    mpv_command(mpv, load);
    while (mpv_wait_event(mpv, 10)->event_id != MPV_EVENT_PLAYBACK_RESTART) {
    }
    const double taken = static_cast<double>(time.nsecsElapsed()) / 1e6;
    const char* stop[] = {"stop", nullptr};
    mpv_command(mpv, stop);
    return taken;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void open(const char* movie, int rounds) {
    const QTemporaryDir folder;
    PreferenceStore preferences(folder.filePath("preferences.json").toStdString());
    AppState session(preferences, {}, folder.filePath("state").toStdString());
    mpv_handle* mpv = mpv_create();
    for (const auto& [name, value] : {std::pair{"vo", "null"},
                                      {"ao", "null"},
                                      {"pause", "yes"},
                                      {"idle", "yes"},
                                      {"hr-seek", "yes"},
                                      {"demuxer-lavf-o", "advanced_editlist=1"}}) {
        mpv_set_option_string(mpv, name, value);
    }
    mpv_initialize(mpv);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int i = 0; i < rounds; ++i) {
        ours.push_back(oursMs(session, movie));
        theirs.push_back(mpvMs(mpv, movie));
    }
    std::printf("%.2f %.2f\n", median(ours), median(theirs));
    mpv_terminate_destroy(mpv);
}

void play(const char* movie, int seconds) {
    const QTemporaryDir folder;
    PreferenceStore preferences(folder.filePath("preferences.json").toStdString());
    AppState session(preferences, {}, folder.filePath("state").toStdString());
    session.player().picture().setGreatestSize({1280, 720});
    QCoro::Task<> loading = session.load(movie);
    QCoro::waitFor(loading);
    session.player().play();
    QEventLoop loop;
    QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
    loop.exec();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.1f\n", static_cast<double>(usage.ru_maxrss) / 1024);
}

} // namespace
} // namespace zelvra

int main(int argc, char** argv) {
    qputenv("ZELVRA_AUDIO", "null");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // required by libmpv
    const std::string command = argc == 4 ? argv[1] : "";
    if (command == "open") {
        zelvra::open(argv[2], std::atoi(argv[3]));
    } else if (command == "play") {
        zelvra::play(argv[2], std::atoi(argv[3]));
    } else {
        std::fputs("usage: player-benchmark open MOVIE ROUNDS | play MOVIE SECONDS\n", stderr);
        return 2;
    }
    return 0;
}
