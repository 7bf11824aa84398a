// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/player/SoftwarePicture.h"
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
#include <ctime>
#include <fstream>
#include <iterator>
#include <mpv/client.h>
#include <string>
#include <sys/resource.h>
#include <vector>

// open: times the opening of a clip, from the call to the first picture, alternating between the session
// (probe, index, player) and a bare libmpv that only loads the clip. Prints both medians in milliseconds.
//
// step: times steps from the call to the drawn picture, each kind at several places of the clip: one back and
// one on after a rest of a second, then back as a held key steps, then ten on; then the same step back by a
// bare libmpv's frame-back-step. Prints median and 95th percentile of each in milliseconds.

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

void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// A paused player in which a clip is open, and the time that its moves take.
class Stepper {
public:
    explicit Stepper(const char* movie)
        : preferences_(folder_.filePath("preferences.json").toStdString()), session_(preferences_) {
        player().picture().setGreatestSize({1280, 720});
        QCoro::Task<> loading = session_.load(movie);
        QCoro::waitFor(loading);
    }

    Player& player() { return session_.player(); }
    const FrameIndex& frames() { return player().currentItem()->asset->frames(); }

    void rest(std::size_t index) {
        QCoro::waitFor(player().seek(frames().frame(index).time));
        wait(1000);
    }

    /// Milliseconds until the picture of a step is drawn.
    double step(int count) {
        QElapsedTimer time;
        time.start();
        QCoro::waitFor(player().step(count));
        const auto& picture = dynamic_cast<SoftwarePicture&>(player().picture());
        while (picture.isDrawing()) {
            wait(1);
        }
        return static_cast<double>(time.nsecsElapsed()) / 1e6;
    }

    /// Steps at the rate of a held key, or as fast as the pictures come if that is slower.
    std::vector<double> hold(int count, int steps) {
        constexpr int repeat = 33; // ms
        std::vector<double> times;
        for (int i = 0; i < steps; ++i) {
            times.push_back(step(count));
            wait(std::max(0, repeat - static_cast<int>(times.back())));
        }
        return times;
    }

private:
    const QTemporaryDir folder_;
    PreferenceStore preferences_;
    AppState session_;
};

/// Milliseconds of mpv's own step back from the middle of each place.
std::vector<double> framesBackByMpv(const char* movie, const std::vector<double>& places) {
    mpv_handle* mpv = mpv_create();
    for (const auto& [name, value] :
         {std::pair{"vo", "null"}, {"ao", "null"}, {"pause", "yes"}, {"idle", "yes"}, {"hr-seek", "yes"}}) {
        mpv_set_option_string(mpv, name, value);
    }
    mpv_initialize(mpv);
    const auto restarted = [&] {
        while (mpv_wait_event(mpv, 10)->event_id != MPV_EVENT_PLAYBACK_RESTART) {
        }
    };
    const char* load[] = {"loadfile", movie, nullptr};
    mpv_command(mpv, load);
    restarted();
    std::vector<double> times;
    for (const double place : places) {
        const std::string seconds = std::to_string(place);
        const char* seek[] = {"seek", seconds.c_str(), "absolute+exact", nullptr};
        mpv_command(mpv, seek);
        restarted();
        wait(1000);
        while (mpv_wait_event(mpv, 0)->event_id != MPV_EVENT_NONE) {
        }
        QElapsedTimer time;
        time.start();
        const char* back[] = {"frame-back-step", nullptr};
        mpv_command(mpv, back);
        restarted();
        times.push_back(static_cast<double>(time.nsecsElapsed()) / 1e6);
    }
    mpv_terminate_destroy(mpv);
    return times;
}

void print(std::vector<double> times) {
    std::ranges::sort(times);
    std::printf("%.2f %.2f ", times[times.size() / 2], times[times.size() * 95 / 100]);
    std::fflush(stdout);
}

void step(const char* movie, int rounds) {
    Stepper stepper(movie);
    std::vector<std::size_t> places;
    for (int i = 0; i < rounds; ++i) { // spread over the clip, and over a group of pictures
        places.push_back(stepper.frames().count() * (static_cast<std::size_t>(i) * 2 + 3) /
                         (static_cast<std::size_t>(rounds) * 2 + 4));
    }
    std::vector<double> back;
    std::vector<double> on;
    std::vector<double> held;
    std::vector<double> ten;
    std::vector<double> seconds;
    for (const std::size_t place : places) {
        constexpr int steps = 60;
        stepper.rest(place);
        back.push_back(stepper.step(-1));
        on.push_back(stepper.step(1));
        std::ranges::copy(stepper.hold(-1, steps), std::back_inserter(held));
        stepper.rest(place);
        std::ranges::copy(stepper.hold(10, 4), std::back_inserter(ten));
        seconds.push_back(stepper.frames().frame(place).time.seconds());
    }
    for (const std::vector<double>& times : {back, on, held, ten, framesBackByMpv(movie, seconds)}) {
        print(times);
    }
    std::printf("\n");
}

double mebibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes / 1024;
        }
    }
    return 0;
}

/// Different pictures a second while playing backward, each drawn.
double picturesBackward(Stepper& stepper, double rate) {
    constexpr int seconds = 4;
    stepper.rest(stepper.frames().count() - 20);
    int pictures = 0;
    const auto counting = QObject::connect(&stepper.player(), &Player::pictureChanged, [&] { ++pictures; });
    stepper.player().playBackward(rate);
    wait(seconds * 1000);
    stepper.player().pause();
    QObject::disconnect(counting);
    return static_cast<double>(pictures) / seconds;
}

/// Different pictures a second while a hand drags through the clip and back.
double picturesDragged(Stepper& stepper) {
    constexpr int moves = 240;
    stepper.rest(10);
    int pictures = 0;
    const auto counting = QObject::connect(&stepper.player(), &Player::pictureChanged, [&] { ++pictures; });
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < moves; ++i) {
        const int place = i < moves / 2 ? i : moves - i;
        const auto frame = static_cast<std::size_t>(place) * stepper.frames().count() / moves * 2;
        stepper.player().scrub(stepper.frames().frame(std::min(frame, stepper.frames().count() - 1)).time);
        wait(16);
    }
    QObject::disconnect(counting);
    return pictures * 1000.0 / static_cast<double>(time.elapsed());
}

/// What a clip costs while the playhead rests: MiB more than after its opening, MiB that are left when it is
/// closed, and processor seconds in a second.
void rest(const char* movie) {
    Stepper stepper(movie);
    const double opened = mebibytes();
    stepper.rest(stepper.frames().count() / 2);
    wait(4000);
    const double resting = mebibytes();
    const std::clock_t before = std::clock();
    wait(2000);
    const double load = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / 2;
    stepper.player().replaceCurrentItem(std::nullopt);
    wait(500);
    std::printf("%.1f %.1f %.4f\n", resting - opened, mebibytes() - opened, load);
}

void shuttle(const char* movie) {
    Stepper stepper(movie);
    std::printf("%.1f ", picturesBackward(stepper, 1));
    std::printf("%.1f ", picturesBackward(stepper, 2));
    std::printf("%.1f\n", picturesDragged(stepper));
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
    } else if (command == "step") {
        zelvra::step(argv[2], std::atoi(argv[3]));
    } else if (command == "shuttle") {
        zelvra::shuttle(argv[2]);
    } else if (command == "rest") {
        zelvra::rest(argv[2]);
    } else if (command == "play") {
        zelvra::play(argv[2], std::atoi(argv[3]));
    } else {
        std::fputs(
            "usage: player-benchmark open|step MOVIE ROUNDS | play MOVIE SECONDS | shuttle|rest MOVIE -\n",
            stderr);
        return 2;
    }
    return 0;
}
