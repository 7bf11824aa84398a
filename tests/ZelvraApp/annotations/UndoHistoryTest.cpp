// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/UndoHistory.h"

#include "ZelvraApp/annotations/Identical.h"
#include "tests/ZelvraApp/annotations/Moments.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UndoOfSteps : public testing::Test {
protected:
    void step(const std::function<bool(Annotations&)>& change) {
        const Annotations before = now_;
        ASSERT_TRUE(change(now_));
        history_.record(before);
    }
    void add(double seconds) {
        step([&](Annotations& annotations) { return annotations.commit(highlightAt(seconds)); });
    }
    auto undone() { return moments((now_ = history_.undo(now_)).highlights); }
    auto redone() { return moments((now_ = history_.redo(now_)).highlights); }

    Annotations now_;
    UndoHistory history_;
};

TEST_F(UndoOfSteps, RevertsAndRedoesOneAtATime) {
    EXPECT_THAT(undone(), IsEmpty());
    EXPECT_THAT(redone(), IsEmpty());
    add(1);
    add(0.5);
    EXPECT_THAT(undone(), ElementsAre(1));
    EXPECT_THAT(redone(), ElementsAre(0.5, 1));
    EXPECT_THAT(undone(), ElementsAre(1));
    add(1.5);
    EXPECT_FALSE(history_.canRedo()) << "after a new step";
    EXPECT_THAT(redone(), ElementsAre(1, 1.5));
    EXPECT_THAT(undone(), ElementsAre(1));
    EXPECT_THAT(undone(), IsEmpty());
    EXPECT_FALSE(history_.canUndo());
}

TEST_F(UndoOfSteps, KeepsFifty) {
    for (int i = 0; i < 60; ++i) {
        add(i);
    }
    for (int i = 0; i < 55; ++i) {
        undone();
    }
    EXPECT_EQ(now_.highlights.size(), 10U);
    for (int i = 0; i < 55; ++i) {
        redone();
    }
    EXPECT_EQ(now_.highlights.size(), 60U);
}

TEST_F(UndoOfSteps, RevertsEveryKind) {
    const CMTime duration = sessionTime(10);
    const auto isUndoable = [&](const char* what, const std::function<bool(Annotations&)>& change) {
        const Annotations before = now_;
        step(change);
        Annotations after = now_;
        Annotations reverted = history_.undo(now_);
        EXPECT_EQ(reverted.activeRoughClipID, after.activeRoughClipID) << "is part of no step";
        reverted.activeRoughClipID = before.activeRoughClipID;
        EXPECT_TRUE(identical(reverted, before)) << what;
        EXPECT_TRUE(identical(history_.redo(after), after)) << what;
    };
    isUndoable("commit", [](Annotations& now) { return now.commit(highlightAt(1)); });
    isUndoable("delete", [](Annotations& now) { return now.deleteHighlight(now.highlights[0].id); });
    isUndoable("in", [&](Annotations& now) { return now.markInPoint(sessionTime(2), duration, 3); });
    isUndoable("out", [&](Annotations& now) { return now.markOutPoint(sessionTime(4), duration); });
    add(5);
    isUndoable("trim, which drops a highlight",
               [](Annotations& now) { return now.setTrim(range(0.5, 1)) && now.highlights.empty(); });
    isUndoable("drag", [&](Annotations& now) {
        return now.dragTrimStart(0.6) && now.dragTrimStart(0.7) && now.dragTrimEnd(1.8, duration);
    });
    isUndoable("mark", [](Annotations& now) { return now.markCurrentClip(); });
    isUndoable("edit", [](Annotations& now) { return now.editMarkedClip(now.markedClips[0].id); });
    isUndoable("unmark", [](Annotations& now) { return now.unmark(now.markedClips[0].id); });
    isUndoable("clear", [](Annotations& now) { return now.setTrim(std::nullopt); });
}

} // namespace
} // namespace zelvra::test
