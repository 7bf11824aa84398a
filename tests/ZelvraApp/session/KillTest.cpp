// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraCore/media/IdentifyMovie.h"

#include <QProcess>

#include <map>
#include <random>

namespace zelvra::test {
namespace {

/// A real process that is killed while its user works. What it printed is what the user saw.
class Killed : public SessionFixture {
protected:
    void SetUp() override {
        session_.reset();
        for (int i = 0; i < 3; ++i) { // of three movies, so that one could be taken for another
            clip("movies/" + std::to_string(i) + ".mov", {.gop = 10 + i});
        }
    }
    ~Killed() override { kill(); }

    void start(int seed, int operations) {
        state_ = folder_ / std::to_string(seed);
        std::filesystem::create_directory(state_);
        QStringList arguments{path(folder_ / "movies"), path(state_), QString::number(seed)};
        if (operations > 0) {
            arguments << QString::number(operations);
        }
        program_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program_.start(QStringLiteral(SESSION_WORKER), arguments);
        ASSERT_TRUE(comesTrue([this] { return program_.bytesAvailable() > 0; }));
    }
    void kill() {
        program_.kill();
        program_.waitForFinished();
    }
    /// The states that the user saw of each movie, and which one was open last.
    void readStates(const QByteArray& printed) {
        states_.clear();
        for (const QByteArray& line : printed.split('\n')) {
            const qsizetype tab = line.indexOf('\t');
            if (tab > 0 && line.endsWith('}')) { // the last line may be cut off
                lastOpen_ = line.left(tab).toStdString();
                states_[lastOpen_].push_back(line.mid(tab + 1).toStdString());
            }
        }
    }
    /// Starts the program again on what the killed one has left, and restores the work on a movie.
    std::string restored(const std::string& movie) {
        session_ = std::make_unique<AppState>(preferences_, desktop_.services(), state_);
        open(folder_ / "movies" / movie);
        EXPECT_TRUE(comesTrue([this] { return session_->leftWorkIsKnown(); }));
        if (!session_->leftWork()) {
            return {};
        }
        session_->restoreLeftWork();
        return text(session_->annotations());
    }
    static std::string text(const Annotations& annotations) {
        AnnotationsDocument document;
        document.work.annotations = annotations;
        std::string line = annotationsText(document);
        std::erase(line, '\n');
        return line;
    }
    static QString path(const std::filesystem::path& file) { return QString::fromStdString(file.string()); }

    std::filesystem::path state_;
    QProcess program_;
    std::map<std::string, std::vector<std::string>> states_;
    std::string lastOpen_;
};

TEST_F(Killed, AtAnyMomentLeavesAStateThatTheUserSaw) {
    std::mt19937 dice(7);
    for (int seed = 0; seed < 50 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        start(seed, 0);
        wait(std::uniform_real_distribution(0.0, 0.9)(dice));
        kill();
        readStates(program_.readAllStandardOutput());
        for (const auto& [movie, states] : states_) {
            const std::string left = restored(movie);
            EXPECT_TRUE(left.empty() || std::ranges::find(states, left) != states.end())
                << movie << " has what was never seen on it: " << left;
            session_.reset();
        }
    }
}

TEST_F(Killed, LosesNothingThatIsOnTheDisk) {
    for (int seed = 100; seed < 105; ++seed) {
        SCOPED_TRACE(seed);
        start(seed, 60);
        QByteArray printed;
        ASSERT_TRUE(comesTrue([&] {
            printed += program_.readAllStandardOutput();
            return printed.endsWith("rests\n");
        }));
        readStates(printed);
        const std::string last = states_[lastOpen_].back();
        const MovieIdentity movie = media::identifyMovie(folder_ / "movies" / lastOpen_);
        EXPECT_TRUE(comesTrue([&] {
            const auto entry = Journal(state_).read(movie);
            return entry && text(entry->work.annotations) == last;
        }));
        kill();
        EXPECT_EQ(restored(lastOpen_), last);
        session_.reset();
    }
}

TEST_F(Killed, IsReportedByTheNextRun) {
    start(200, 0);
    kill();
    session_ = std::make_unique<AppState>(preferences_, desktop_.services(), state_);
    EXPECT_TRUE(comesTrue([this] { return !session_->interruptedClips().empty(); }));
    const std::filesystem::path movie = session_->interruptedClips().front();
    EXPECT_EQ(movie.parent_path(), folder_ / "movies");
    open(movie);
    EXPECT_TRUE(session_->interruptedClips().empty()) << "it is open again";
    session_ = std::make_unique<AppState>(preferences_, desktop_.services(), state_);
    wait(0.1);
    EXPECT_TRUE(session_->interruptedClips().empty()) << "reported once";
}

} // namespace
} // namespace zelvra::test
