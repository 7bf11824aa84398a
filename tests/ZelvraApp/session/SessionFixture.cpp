// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "tests/support/MovieReading.h"

#include <QTest>

#include <iomanip>
#include <sstream>

namespace zelvra::test {

SessionFixture::SessionFixture() {
    restart();
}

void SessionFixture::restart() {
    session_.reset();
    session_ = std::make_unique<AppState>(preferences_, desktop_.services(), folder_ / "state");
}

void SessionFixture::run(QCoro::Task<> task) {
    QCoro::waitFor(std::move(task));
}

bool SessionFixture::comesTrue(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 20'000);
}

void SessionFixture::wait(double seconds) {
    QTest::qWait(static_cast<int>(seconds * 1000));
}

std::filesystem::path SessionFixture::clip(const std::string& name, const NumberedMovie& movie) const {
    const std::filesystem::path file = folder_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::copy_file(movieFile(movie), file);
    return file;
}

void SessionFixture::open(const std::filesystem::path& clip) {
    run(session_->load(clip));
    ASSERT_EQ(session_->errorMessage(), "");
    ASSERT_TRUE(comesTrue([this] { return session_->player().isReady(); }));
}

void SessionFixture::seek(double seconds) {
    QCoro::Task<bool> seeking = session_->player().seek(sessionTime(seconds));
    ASSERT_TRUE(QCoro::waitFor(std::move(seeking)));
}

Highlight SessionFixture::add(double seconds, double duration, int marker) {
    const HighlightDraft draft = draftAt(seconds, duration, marker);
    session_->setDraft(draft);
    session_->commitDraft();
    return draft.highlight();
}

std::vector<double> SessionFixture::moments() const {
    std::vector<double> seconds;
    for (const Highlight& highlight : session_->highlights()) {
        seconds.push_back(highlight.timestamp.seconds());
    }
    return seconds;
}

std::vector<std::pair<double, double>> SessionFixture::clips() const {
    std::vector<std::pair<double, double>> spans;
    for (const MarkedClip& marked : session_->markedClips()) {
        spans.emplace_back(marked.range.start.seconds(), marked.range.end().seconds());
    }
    return spans;
}

std::pair<double, double> SessionFixture::span() const {
    const auto& trim = session_->trimRange();
    return trim ? std::pair(trim->start.seconds(), trim->end().seconds()) : std::pair(-1.0, -1.0);
}

CMTimeRange SessionFixture::range(double start, double end) {
    return CMTimeRange::fromStartToEnd(sessionTime(start), sessionTime(end));
}

std::string SessionFixture::story(const std::filesystem::path& movie) {
    const std::vector<ShownFrame> frames = showMovie(movie).frames;
    std::ostringstream text;
    for (std::size_t first = 0; first < frames.size();) {
        const std::optional<int> marker = frames[first].marker;
        std::size_t next = first + 1;
        while (next < frames.size() && frames[next].marker == marker &&
               frames[next].number.value_or(-1) == frames[next - 1].number.value_or(-1) + (marker ? 0 : 1)) {
            ++next;
        }
        text << (first > 0 ? ", " : "") << frames[first].number.value_or(-1);
        if (!marker) {
            text << '-' << frames[next - 1].number.value_or(-1);
        } else {
            const CMTime end = next < frames.size() ? frames[next].time : frames.back().time;
            text << " frozen " << std::fixed << std::setprecision(1) << (end - frames[first].time).seconds()
                 << " s #" << *marker;
        }
        first = next;
    }
    return text.str();
}

} // namespace zelvra::test
