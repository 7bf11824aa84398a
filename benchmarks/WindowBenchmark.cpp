// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/player/SoftwarePicture.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/shell/Application.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

// Measures the application in its real window from inside. Each command prints numbers on one line:
//
//     window-benchmark start
//         milliseconds from the process's start to the first frame on screen, resident MiB
//     window-benchmark play MOVIE SECONDS
//         processor seconds a second, pictures shown a second, resident MiB
//     window-benchmark drag-shape MOVIE
//     window-benchmark drag-trim MOVIE MARKS
//         milliseconds from a pointer movement to the frame that shows it, median and 95th of 100; with
//         that many marked clips and highlights on the strip

namespace zelvra {
namespace {

double millisecondsSinceStart() {
    std::ifstream file("/proc/self/stat");
    std::string line;
    std::getline(file, line);
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    std::string field;
    constexpr int startTime = 20; // index after the program's name; in clock ticks since the machine started
    for (int i = 0; i < startTime; ++i) {
        fields >> field;
    }
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const double ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6 -
           std::stod(field) / ticks * 1e3;
}

double residentMiB() {
    std::ifstream file("/proc/self/statm");
    long whole = 0;
    long resident = 0;
    file >> whole >> resident;
    return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void waitForFrame(QQuickWindow& window) {
    QEventLoop loop;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
    loop.exec();
}

void pass(int milliseconds) {
    QTest::qWait(milliseconds);
}

void open(Application& application, const char* movie) {
    application.state().handleOpenedURLs({QUrl::fromLocalFile(movie)});
    if (!QTest::qWaitFor([&] { return application.state().player().isReady(); }, 20'000)) {
        std::fputs("the movie cannot be opened\n", stderr);
        std::exit(1);
    }
    pass(500);
}

void start(Application& application) {
    waitForFrame(application.mainWindow());
    const double taken = millisecondsSinceStart();
    pass(1000);
    std::printf("%.0f %.1f\n", taken, residentMiB());
}

void play(Application& application, const char* movie, int seconds) {
    open(application, movie);
    Player& player = application.state().player();
    int pictures = 0;
    qint64 last = 0;
    QObject::connect(&application.mainWindow(), &QQuickWindow::frameSwapped, &application.mainWindow(), [&] {
        const auto& picture = static_cast<const SoftwarePicture&>(player.picture());
        const qint64 shown = picture.image().cacheKey();
        pictures += std::exchange(last, shown) != shown ? 1 : 0;
    });
    player.play();
    pass(1000);
    pictures = 0;
    const double before = processorSeconds();
    QElapsedTimer time;
    time.start();
    pass(seconds * 1000);
    const double passed = static_cast<double>(time.nsecsElapsed()) / 1e9;
    std::printf("%.3f %.2f %.1f\n", (processorSeconds() - before) / passed, pictures / passed, residentMiB());
}

QQuickWindow& editorOf(Application& application) {
    QQuickWindow* editor = nullptr;
    letRun(application.state().addHighlightAtCurrentTime());
    const bool shown = QTest::qWaitFor([&] {
        for (QWindow* window : QGuiApplication::allWindows()) {
            if (window->isVisible() && window->objectName() == QLatin1String("editorWindow")) {
                editor = qobject_cast<QQuickWindow*>(window);
            }
        }
        return editor != nullptr;
    });
    if (!shown) {
        std::fputs("the editor does not open\n", stderr);
        std::exit(1);
    }
    return *editor;
}

void timeDrag(QQuickWindow& window, QPoint start, const std::function<QPoint(int)>& way) {
    QTest::mousePress(&window, Qt::LeftButton, {}, start);
    std::vector<double> frames;
    constexpr int moves = 300;
    for (int move = 1; move <= moves; ++move) {
        QElapsedTimer time;
        time.start();
        QTimer::singleShot(0, &window, [&] { QTest::mouseMove(&window, start + way(move)); });
        waitForFrame(window);
        frames.push_back(static_cast<double>(time.nsecsElapsed()) / 1e6);
    }
    QTest::mouseRelease(&window, Qt::LeftButton, {}, start);
    std::ranges::sort(frames);
    std::printf("%.1f %.1f\n", frames[moves / 2], frames[moves * 95 / 100]);
}

void dragShape(Application& application, const char* movie) {
    open(application, movie);
    QQuickWindow& editor = editorOf(application);
    editor.resize(1280, 800);
    pass(500);
    auto* handle = editor.findChild<QQuickItem*>(QStringLiteral("moveHandle"));
    const QPoint start = handle->mapToScene({handle->width() / 2, handle->height() / 2}).toPoint();
    timeDrag(editor, start, [](int move) { return QPoint(move * 3 % 300, move * 2 % 200); });
}

void dragTrim(Application& application, const char* movie, int marks) {
    open(application, movie);
    AppState& state = application.state();
    const double length = state.sourceInfo()->duration.seconds();
    const auto range = [](double start, double end) {
        return CMTimeRange::fromStartToEnd(sessionTime(start), sessionTime(end));
    };
    for (int i = 0; i < marks; ++i) {
        state.setTrim(range(length * i / marks, length * (i + 1) / marks));
        state.markCurrentClip();
    }
    state.setTrim(range(0, length / 20));
    state.markCurrentClip();
    state.editMarkedClip(state.markedClips().back());
    const Image frame(
        std::make_shared<const Image::Raster>(Image::Raster{1, 1, std::vector<std::uint8_t>(4)}), {});
    for (int i = 0; i < marks; ++i) {
        // On the strip after the handle, because a dot over the handle would be pressed instead.
        const double moment = length * (0.1 + 0.1 * i / marks);
        const Highlight highlight{Uuid::random(), sessionTime(moment), sessionTime(3), {}};
        state.setDraft(HighlightDraft::editing(highlight, frame, state.sourceInfo()->displaySize));
        state.commitDraft();
    }
    state.setShowDefaultsScopePrompt(false);
    QQuickWindow& window = application.mainWindow();
    pass(1000);
    auto* handle = window.findChild<QQuickItem*>(QStringLiteral("trimEndHandle"));
    if (handle == nullptr) {
        std::fputs("no handle to drag: is the movie longer than 60 s?\n", stderr);
        std::exit(1);
    }
    const QPoint start = handle->mapToScene({handle->width() / 2, handle->height() / 2}).toPoint();
    timeDrag(window, start, [](int move) { return QPoint(move * 3 % 300, 0); });
}

} // namespace
} // namespace zelvra

int main(int argc, char** argv) {
    qputenv("ZELVRA_AUDIO", "null");
    zelvra::Application::prepare();
    const QGuiApplication program(argc, argv);
    const QTemporaryDir folder;
    qputenv("ZELVRA_STATE", folder.filePath("state").toUtf8()); // its first size, and no work that was left
    zelvra::Application application({.preferences = folder.filePath("preferences.json").toStdString()});
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "start" && argc == 2) {
        zelvra::start(application);
    } else if (command == "play" && argc == 4) {
        zelvra::play(application, argv[2], std::atoi(argv[3]));
    } else if (command == "drag-shape" && argc == 3) {
        zelvra::dragShape(application, argv[2]);
    } else if (command == "drag-trim" && argc == 4) {
        zelvra::dragTrim(application, argv[2], std::atoi(argv[3]));
    } else {
        std::fputs(
            "usage: window-benchmark start | play MOVIE SECONDS | drag-shape MOVIE | drag-trim MOVIE MARKS\n",
            stderr);
        return 2;
    }
    return 0;
}
