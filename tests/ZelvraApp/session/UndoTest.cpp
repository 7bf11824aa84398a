// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

namespace zelvra::test {
namespace {

using testing::ElementsAre;

class Undo : public SessionFixture {};

TEST_F(Undo, RevertsEveryOperationAsOneStep) {
    open(clip("one.mov"));
    const auto isOneStep = [&](const char* what, const std::function<void()>& operation) {
        Annotations before = session_->annotations();
        operation();
        const Annotations after = session_->annotations();
        session_->undo();
        before.activeRoughClipID = after.activeRoughClipID; // is part of no step
        EXPECT_TRUE(identical(session_->annotations(), before)) << what;
        session_->redo();
        EXPECT_TRUE(identical(session_->annotations(), after)) << what;
    };
    isOneStep("commit", [&] { add(1); });
    isOneStep("delete", [&] { session_->deleteHighlight(session_->highlights()[0]); });
    isOneStep("in", [&] { session_->markInPoint(); });
    seek(0.8);
    isOneStep("out", [&] { session_->markOutPoint(); });
    isOneStep("trim", [&] { session_->setTrim(range(0.5, 1)); });
    isOneStep("drag", [&] {
        session_->pushUndo();
        session_->dragTrimStart(0.6);
        session_->dragTrimStart(0.7);
        session_->dragTrimEnd(1.8);
    });
    isOneStep("mark", [&] { session_->markCurrentClip(); });
    isOneStep("edit", [&] { session_->editMarkedClip(session_->markedClips()[0]); });
    isOneStep("unmark", [&] { session_->unmark(session_->markedClips()[0].id); });
    isOneStep("clear", [&] { session_->setTrim(std::nullopt); });
}

TEST_F(Undo, IsForgottenWithTheClip) {
    const std::filesystem::path file = clip("one.mov");
    open(file);
    add(1);
    open(file);
    EXPECT_FALSE(session_->canUndo());
    session_->undo();
    EXPECT_THAT(moments(), ElementsAre());
}

TEST_F(Undo, NotifiesOfEveryChangeAndOfNothingElse) {
    open(clip("one.mov"));
    const QSignalSpy highlights(session_.get(), &AppState::highlightsChanged);
    const QSignalSpy trim(session_.get(), &AppState::trimRangeChanged);
    const QSignalSpy content(session_.get(), &AppState::timelineHasContentChanged);
    const QSignalSpy undo(session_.get(), &AppState::canUndoChanged);
    const QSignalSpy redo(session_.get(), &AppState::canRedoChanged);
    session_->deleteHighlight(draftAt(1).highlight());
    session_->setTrim(std::nullopt);
    session_->undo();
    session_->redo();
    EXPECT_EQ(highlights.count() + trim.count() + content.count() + undo.count() + redo.count(), 0);
    add(1);
    session_->setTrim(CMTimeRange{{1, 2}, {1, 2}});
    session_->setTrim(CMTimeRange{{2, 4}, {1, 2}});
    EXPECT_EQ(highlights.count(), 1);
    EXPECT_EQ(trim.count(), 2) << "the same moment in other ticks is another value";
    EXPECT_EQ(content.count(), 1);
    EXPECT_EQ(undo.count(), 1);
    session_->undo();
    EXPECT_EQ(trim.count(), 3);
    EXPECT_EQ(redo.count(), 1);
    add(1);
    EXPECT_EQ(redo.count(), 2) << "a new step forgets what was undone";
}

} // namespace
} // namespace zelvra::test
