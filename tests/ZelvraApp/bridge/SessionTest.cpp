// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/bridge/Session.h"
#include "tests/support/Files.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/app/Drafts.h"

#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

class SessionRows : public testing::Test {
protected:
    SessionRows() {
        QCoro::Task<> loading = state_.load(movieFile({}));
        QCoro::waitFor(std::move(loading));
        for (const auto changed : {&AppState::highlightsChanged, &AppState::markedClipsChanged}) {
            QObject::connect(&state_, changed, &state_, [this] { expectRowsOfTheLists(); });
        }
    }
    void expectRowsOfTheLists() {
        ++changes_;
        EXPECT_TRUE(identical(session_.highlightRows()->items(), state_.highlights()));
        EXPECT_TRUE(identical(session_.markedClipRows()->items(), state_.markedClips()));
    }
    void add(double seconds) {
        state_.setDraft(draftAt(seconds));
        state_.commitDraft();
    }

    TemporaryFolder folder_;
    PreferenceStore preferences_{folder_ / "preferences.json"};
    AppState state_{preferences_, {}, folder_ / "state"};
    Session session_{state_};
    int changes_ = 0;
};

TEST_F(SessionRows, AreTheListsForEveryLaterObserver) {
    add(2);
    add(1);
    state_.deleteHighlight(state_.highlights()[0]);
    state_.setTrim(CMTimeRange{{0, 1}, {2, 1}});
    state_.markCurrentClip();
    state_.undo();
    state_.redo();
    state_.unmark(state_.markedClips()[0].id);
    EXPECT_EQ(changes_, 10);
}

TEST_F(SessionRows, HaveTheIdsThatCommandsTake) {
    add(1);
    add(2);
    const HighlightModel& rows = *session_.highlightRows();
    session_.deleteHighlight(rows.data(rows.index(0), HighlightModel::idRole).toString());
    session_.deleteHighlight(QStringLiteral("unknown"));
    ASSERT_EQ(session_.highlightCount(), 1);
    EXPECT_EQ(state_.highlights()[0].timestamp.seconds(), 2);
}

} // namespace
} // namespace zelvra::test
