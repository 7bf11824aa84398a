// SPDX-License-Identifier: GPL-3.0-or-later
//
// A user who works until the program is killed: opens the movies of a folder in turn and changes the
// annotations at random. Each state is printed before the journal can know it: movie, tab, its annotations as
// one line of JSON. With a number of operations, it rests after so many.
//     session_worker MOVIES STATE SEED [OPERATIONS]

#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/AppState.h"
#include "ZelvraApp/session/Background.h"
#include "tests/support/app/Drafts.h"

#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <clocale>
#include <iostream>
#include <random>
#include <string>

namespace zelvra::test {
namespace {

class Worker : public QObject {
public:
    Worker(const std::filesystem::path& movies, const std::filesystem::path& state, unsigned seed,
           int operations)
        : movies_(movies),
          preferences_(state / "preferences.json"),
          session_(preferences_, {}, state),
          dice_(seed),
          left_(operations) {
        connect(&timer_, &QTimer::timeout, this, [this] { work(); });
        letRun(begin());
    }

private:
    QCoro::Task<> begin() {
        QCoro::Task<> loading = session_.loadFolder(movies_);
        co_await loading;
        connect(&session_, &AppState::highlightsChanged, this, &Worker::print);
        connect(&session_, &AppState::trimRangeChanged, this, &Worker::print);
        connect(&session_, &AppState::markedClipsChanged, this, &Worker::print);
        timer_.start(5);
    }

    void work() {
        if (left_-- == 0) {
            timer_.stop();
            std::cout << "rests" << std::endl;
            return;
        }
        if (!session_.leftWorkIsKnown()) {
            return;
        }
        if (session_.leftWork()) {
            session_.restoreLeftWork();
            return;
        }
        switch (pick(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            session_.setDraft(draftAt(seconds()));
            session_.commitDraft();
            break;
        case 4:
            if (!session_.highlights().empty()) {
                session_.deleteHighlight(session_.highlights()[0]);
            }
            break;
        case 5: session_.setTrim(CMTimeRange{sessionTime(seconds() / 2), sessionTime(1)}); break;
        case 6: session_.dragTrimEnd(seconds()); break;
        case 7: session_.markCurrentClip(); break;
        case 8:
            if (!session_.markedClips().empty()) {
                session_.editMarkedClip(session_.markedClips()[0]);
            }
            break;
        case 9: session_.undo(); break;
        case 10: session_.redo(); break;
        default:
            if (pick(4) == 0) {
                letRun(session_.canGoNext() ? session_.nextClip() : session_.previousClip());
            }
        }
    }

    /// Emitted in the middle of an operation, but after all values have changed.
    void print() {
        AnnotationsDocument document;
        document.work.annotations = session_.annotations();
        std::string text = annotationsText(document);
        std::erase(text, '\n');
        std::cout << session_.videoFile()->filename().string() << '\t' << text << std::endl;
    }

    int pick(int count) { return std::uniform_int_distribution(0, count - 1)(dice_); }
    double seconds() { return std::uniform_real_distribution(0.0, 2.0)(dice_); }

    std::filesystem::path movies_;
    PreferenceStore preferences_;
    AppState session_;
    QTimer timer_;
    std::mt19937 dice_;
    int left_;
};

} // namespace
} // namespace zelvra::test

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ZELVRA_AUDIO", "null");
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // the player's core needs it
    const zelvra::test::Worker worker(argv[1], argv[2], static_cast<unsigned>(std::stoul(argv[3])),
                                      argc > 4 ? std::stoi(argv[4]) : -1);
    return QGuiApplication::exec();
}
