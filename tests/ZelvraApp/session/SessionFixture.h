// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"
#include "tests/support/Files.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/app/Desktop.h"
#include "tests/support/app/Drafts.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zelvra::test {

/// A session as users have it, with a real player and the real engine, and with a folder and preferences of
/// its own.
class SessionFixture : public testing::Test {
protected:
    SessionFixture();

    /// Ends the program, as users do, and starts it again.
    void restart();

    /// Runs the event loop until the task is done or the condition holds. Waiting for a condition ends after
    /// 20 s.
    static void run(QCoro::Task<> task);
    static bool comesTrue(const std::function<bool()>& condition);
    static void wait(double seconds);

    /// A copy of that movie in the test's folder.
    std::filesystem::path clip(const std::string& name, const NumberedMovie& movie = {}) const;
    /// Opens it and waits for its first picture.
    void open(const std::filesystem::path& clip);
    /// Moves the playhead exactly there.
    void seek(double seconds);

    /// Commits a new highlight; see draftAt.
    Highlight add(double seconds, double duration = 3, int marker = 0);
    /// Moments of the highlights, in seconds.
    std::vector<double> moments() const;
    /// Start and end of the marked clips, in seconds.
    std::vector<std::pair<double, double>> clips() const;
    /// Start and end of the trim, in seconds; -1 without one.
    std::pair<double, double> span() const;
    static CMTimeRange range(double start, double end);
    /// What a movie shows: "0-29, 30 frozen 1.0 s #2, 30-59", numbers of the source's pictures.
    static std::string story(const std::filesystem::path& movie);

    TemporaryFolder folder_;
    PreferenceStore preferences_{folder_ / "preferences.json"};
    Desktop desktop_;
    std::unique_ptr<AppState> session_;
};

} // namespace zelvra::test
