// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"

#include <random>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

class Undo : public SessionFixture {};

TEST_F(Undo, RevertsAndRedoesOneStepAtATime) {
    open(clip("one.mov"));
    session_->undo();
    session_->redo();
    EXPECT_FALSE(session_->canUndo());
    add(1);
    add(0.5);
    session_->undo();
    EXPECT_THAT(moments(), ElementsAre(1));
    session_->redo();
    EXPECT_THAT(moments(), ElementsAre(0.5, 1));
    session_->undo();
    add(1.5);
    EXPECT_FALSE(session_->canRedo());
    session_->undo();
    session_->undo();
    EXPECT_THAT(moments(), ElementsAre());
    EXPECT_FALSE(session_->canUndo());
}

TEST_F(Undo, KeepsFiftySteps) {
    open(clip("one.mov"));
    for (int i = 0; i < 60; ++i) {
        add(i / 60.0);
    }
    for (int i = 0; i < 55; ++i) {
        session_->undo();
    }
    EXPECT_EQ(moments().size(), 10U);
    for (int i = 0; i < 55; ++i) {
        session_->redo();
    }
    EXPECT_EQ(moments().size(), 60U);
}

TEST_F(Undo, RevertsEveryKindOfStep) {
    open(clip("one.mov"));
    const auto isUndoable = [&](const char* what, const std::function<void()>& step) {
        const auto highlights = session_->highlights();
        const auto clips = session_->markedClips();
        const auto trim = session_->trimRange();
        step();
        ASSERT_TRUE(session_->canUndo()) << what;
        session_->undo();
        EXPECT_TRUE(identical(session_->highlights(), highlights)) << what;
        EXPECT_TRUE(identical(session_->markedClips(), clips)) << what;
        EXPECT_TRUE(identical(session_->trimRange(), trim)) << what;
        EXPECT_EQ(session_->editingClipID(), std::nullopt) << what;
        session_->redo();
    };
    isUndoable("commit", [&] { add(1); });
    isUndoable("delete", [&] { session_->deleteHighlight(session_->highlights()[0]); });
    isUndoable("in", [&] { session_->markInPoint(); });
    seek(0.8);
    isUndoable("out", [&] { session_->markOutPoint(); });
    isUndoable("trim", [&] { session_->setTrim(range(0.5, 1)); });
    isUndoable("drag", [&] {
        session_->pushUndo();
        session_->dragTrimStart(0.6);
        session_->dragTrimStart(0.7);
        session_->dragTrimEnd(1.8);
    });
    isUndoable("mark", [&] { session_->markCurrentClip(); });
    isUndoable("unmark", [&] { session_->unmark(session_->markedClips()[0].id); });
    session_->editMarkedClip(session_->markedClips()[0]);
    EXPECT_TRUE(session_->editingClipID());
    session_->undo();
    EXPECT_EQ(session_->editingClipID(), std::nullopt);
}

TEST_F(Undo, RestoresThePlayersBounds) {
    open(clip("one.mov"));
    session_->setTrim(range(0.5, 1));
    session_->setTrim(std::nullopt);
    EXPECT_FALSE(session_->player().currentItem()->forwardPlaybackEndTime.isValid());
    session_->undo();
    EXPECT_EQ(session_->player().currentItem()->reversePlaybackEndTime, sessionTime(0.5));
    EXPECT_EQ(session_->player().currentItem()->forwardPlaybackEndTime, sessionTime(1));
}

TEST_F(Undo, IsForgottenWithTheClip) {
    const std::filesystem::path file = clip("one.mov");
    open(file);
    add(1);
    open(file);
    session_->undo();
    EXPECT_THAT(moments(), ElementsAre());
}

TEST_F(Undo, NotifiesOfEveryChangeAndOfNothingElse) {
    open(clip("one.mov"));
    const QSignalSpy highlights(session_.get(), &AppState::highlightsChanged);
    const QSignalSpy trim(session_.get(), &AppState::trimRangeChanged);
    const QSignalSpy content(session_.get(), &AppState::timelineHasContentChanged);
    session_->deleteHighlight(draftAt(1).highlight());
    session_->setTrim(std::nullopt);
    EXPECT_EQ(highlights.count() + trim.count() + content.count(), 0);
    add(1);
    session_->setTrim(CMTimeRange{{1, 2}, {1, 2}});
    session_->setTrim(CMTimeRange{{2, 4}, {1, 2}});
    EXPECT_EQ(highlights.count(), 1);
    EXPECT_EQ(trim.count(), 2) << "the same moment in other ticks is another value";
    EXPECT_EQ(content.count(), 1);
}

/// Calls all operations in random order, and checks after each the invariants that the program relies on.
class RandomOperations : public SessionFixture {
protected:
    void step() {
        switch (pick(16)) {
        case 0:
        case 1:
        case 2: add(seconds()); break;
        case 3: session_->deleteHighlight(anyHighlight()); break;
        case 4: setAnyTrim(); break;
        case 5: session_->setTrim(std::nullopt); break;
        case 6: session_->dragTrimStart(seconds() * 1.5 - 0.5); break;
        case 7: session_->dragTrimEnd(seconds() * 1.5 - 0.5); break;
        case 8: session_->markInPoint(); break;
        case 9: session_->markOutPoint(); break;
        case 10: session_->markCurrentClip(); break;
        case 11: session_->editMarkedClip(anyClip()); break;
        case 12: session_->unmark(anyClip().id); break;
        case 13: session_->undo(); break;
        case 14: session_->redo(); break;
        case 15: session_->observePlaybackTime(sessionTime(seconds())); break;
        default: break;
        }
        if (pick(200) == 0) {
            seek(seconds());
        }
    }

    void expectInvariants() {
        EXPECT_TRUE(std::ranges::is_sorted(session_->highlights(), {}, &Highlight::timestamp));
        if (const auto& trim = session_->trimRange()) {
            EXPECT_GT(trim->duration.seconds(), 0.0999);
            EXPECT_EQ(session_->player().currentItem()->forwardPlaybackEndTime, trim->end());
        } else {
            EXPECT_FALSE(session_->player().currentItem()->forwardPlaybackEndTime.isValid());
        }
        for (const MarkedClip& clip : session_->markedClips()) {
            EXPECT_GT(clip.range.duration, CMTime::zero());
        }
    }

    void expectUndoThenRedoIsTheIdentity() {
        if (!session_->canUndo()) {
            return;
        }
        const auto highlights = session_->highlights();
        const auto clips = session_->markedClips();
        const auto trim = session_->trimRange();
        const auto editing = session_->editingClipID();
        session_->undo();
        session_->redo();
        EXPECT_TRUE(identical(session_->highlights(), highlights));
        EXPECT_TRUE(identical(session_->markedClips(), clips));
        EXPECT_TRUE(identical(session_->trimRange(), trim));
        EXPECT_EQ(session_->editingClipID(), editing);
    }

    int undoSteps() {
        int steps = 0;
        for (; session_->canUndo(); ++steps) {
            session_->undo();
        }
        for (int i = 0; i < steps; ++i) {
            session_->redo();
        }
        return steps;
    }

private:
    int pick(int count) { return std::uniform_int_distribution(0, count - 1)(dice_); }
    double seconds() { return std::uniform_real_distribution(0.0, 2.0)(dice_); }
    void setAnyTrim() {
        const double start = seconds() * 0.9;
        session_->setTrim(range(start, start + 0.2));
    }
    /// Mostly one that exists, sometimes one that does not any more.
    Highlight anyHighlight() {
        const auto& all = session_->highlights();
        return all.empty() || pick(5) == 0 ? draftAt(1).highlight() : all[pick(static_cast<int>(all.size()))];
    }
    MarkedClip anyClip() {
        const auto& all = session_->markedClips();
        return all.empty() || pick(5) == 0 ? MarkedClip{Uuid::random(), range(0.5, 1), {}}
                                           : all[pick(static_cast<int>(all.size()))];
    }

    std::mt19937 dice_{20240607};
};

TEST_F(RandomOperations, KeepTheInvariants) {
    open(clip("one.mov"));
    for (int i = 0; i < 10'000 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        step();
        expectInvariants();
        if (i % 10 == 0) {
            expectUndoThenRedoIsTheIdentity();
        }
        if (i % 500 == 0) {
            EXPECT_LE(undoSteps(), 50);
        }
    }
}

} // namespace
} // namespace zelvra::test
