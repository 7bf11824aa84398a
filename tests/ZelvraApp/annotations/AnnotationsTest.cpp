// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/Annotations.h"

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/annotations/UndoHistory.h"
#include "tests/ZelvraApp/annotations/Moments.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Of a movie of 10 seconds.
class AnnotationsOfAMovie : public testing::Test {
protected:
    void mark(double start, double end) { annotations_.markedClips.push_back(clipOf(start, end)); }
    const Uuid& idOf(std::size_t clip) const { return annotations_.markedClips.at(clip).id; }
    auto clips() const { return spans(annotations_.markedClips); }
    auto trim() const { return span(annotations_.trimRange); }
    auto highlights() const { return moments(annotations_.highlights); }

    static constexpr CMTime duration_{6000, 600};
    Annotations annotations_;
};

TEST_F(AnnotationsOfAMovie, KeepHighlightsInOrderAndReplaceAnEditedOne) {
    const Highlight first = highlightAt(2);
    for (const Highlight& highlight : {highlightAt(4), first, highlightAt(2), highlightAt(1)}) {
        EXPECT_TRUE(annotations_.commit(highlight));
    }
    EXPECT_THAT(highlights(), ElementsAre(1, 2, 2, 4));
    EXPECT_EQ(annotations_.highlights[1].id, first.id) << "of one moment, the earlier made one first";
    Highlight moved = first;
    moved.timestamp = sessionTime(9);
    annotations_.commit(moved);
    EXPECT_THAT(highlights(), ElementsAre(1, 2, 4, 9));
    EXPECT_TRUE(annotations_.deleteHighlight(annotations_.highlights[3].id));
    EXPECT_FALSE(annotations_.deleteHighlight(first.id));
    EXPECT_THAT(highlights(), ElementsAre(1, 2, 4));
}

TEST_F(AnnotationsOfAMovie, LoseHighlightsOutsideANewTrimButNotAtItsEnds) {
    for (const double moment : {1.0, 2.0, 3.0, 4.0, 5.0}) {
        annotations_.commit(highlightAt(moment));
    }
    EXPECT_TRUE(annotations_.setTrim(CMTimeRange::fromStartToEnd({2, 1}, {2400, 600})));
    EXPECT_THAT(highlights(), ElementsAre(2, 3, 4));
    annotations_.setTrim(CMTimeRange::fromStartToEnd({1201, 600}, {2399, 600}));
    EXPECT_THAT(highlights(), ElementsAre(3));
    EXPECT_TRUE(annotations_.setTrim(std::nullopt));
    EXPECT_FALSE(annotations_.setTrim(std::nullopt));
    EXPECT_THAT(highlights(), ElementsAre(3));
}

TEST_F(AnnotationsOfAMovie, KeepDraggedEdgesInsideAndApart) {
    EXPECT_FALSE(annotations_.dragTrimStart(1));
    EXPECT_FALSE(annotations_.dragTrimEnd(1, duration_));
    annotations_.setTrim(range(2, 4));
    annotations_.commit(highlightAt(3));
    annotations_.dragTrimStart(-3);
    EXPECT_THAT(trim(), Pair(0, 4));
    annotations_.dragTrimStart(7);
    EXPECT_THAT(trim(), Pair(3.9, 4));
    annotations_.dragTrimEnd(70, duration_);
    EXPECT_THAT(trim(), Pair(3.9, 10));
    annotations_.dragTrimEnd(1, duration_);
    EXPECT_THAT(trim(), Pair(3.9, 4));
    annotations_.dragTrimEnd(std::nan(""), duration_);
    annotations_.dragTrimStart(std::nan(""));
    EXPECT_THAT(trim(), Pair(0, 10));
    EXPECT_THAT(highlights(), ElementsAre(3));
}

TEST_F(AnnotationsOfAMovie, MarkARoughClipAtThePlayheadAndMoveItsEnd) {
    const auto in = [&](double now) { return annotations_.markInPoint(sessionTime(now), duration_, 3); };
    const auto out = [&](double now) { return annotations_.markOutPoint(sessionTime(now), duration_); };
    EXPECT_FALSE(out(5)) << "no clip yet";
    EXPECT_TRUE(in(2));
    EXPECT_THAT(clips(), ElementsAre(Pair(2, 5)));
    EXPECT_EQ(annotations_.activeRoughClipID, idOf(0));
    for (const double tooEarly : {1.0, 2.0, 2.1}) {
        EXPECT_FALSE(out(tooEarly));
    }
    EXPECT_TRUE(out(3));
    EXPECT_TRUE(out(7));
    EXPECT_TRUE(in(8));
    EXPECT_THAT(clips(), ElementsAre(Pair(2, 7), Pair(8, 10))) << "no further than the source";
    EXPECT_FALSE(in(9.95));
    EXPECT_TRUE(annotations_.unmark(idOf(1)));
    EXPECT_FALSE(out(9));
    EXPECT_FALSE(annotations_.unmark(Uuid::random()));
    EXPECT_THAT(clips(), ElementsAre(Pair(2, 7)));
}

TEST_F(AnnotationsOfAMovie, MoveTheTrimByMarkingIfThereIsOne) {
    annotations_.setTrim(range(4, 6));
    const auto in = [&](double now) {
        annotations_.markInPoint(sessionTime(now), duration_, 3);
        return trim();
    };
    const auto out = [&](double now) {
        annotations_.markOutPoint(sessionTime(now), duration_);
        return trim();
    };
    EXPECT_THAT(in(5), Pair(5, 6));
    EXPECT_THAT(in(8), Pair(5.9, 6));
    EXPECT_THAT(out(3), Pair(5.9, 6));
    EXPECT_THAT(out(99), Pair(5.9, 10));
    EXPECT_THAT(in(-1), Pair(0, 10));
    EXPECT_THAT(clips(), IsEmpty());
}

TEST_F(AnnotationsOfAMovie, SaveAnEditedClipInPlaceOrLeaveItAsItWas) {
    annotations_.commit(highlightAt(9));
    mark(1, 2);
    mark(3, 4);
    mark(5, 6);
    annotations_.activeRoughClipID = idOf(0);
    EXPECT_TRUE(annotations_.editMarkedClip(idOf(1)));
    EXPECT_EQ(annotations_.activeRoughClipID, std::nullopt);
    EXPECT_FALSE(annotations_.editMarkedClip(idOf(1)));
    EXPECT_FALSE(annotations_.editMarkedClip(Uuid::random()));
    EXPECT_THAT(highlights(), IsEmpty());
    EXPECT_THAT(moments(annotations_.looseHighlights()), ElementsAre(9));
    EXPECT_FALSE(annotations_.hasUnsavedEdits());
    annotations_.commit(highlightAt(3.5));
    annotations_.dragTrimEnd(4.5, duration_);
    EXPECT_TRUE(annotations_.hasUnsavedEdits());
    EXPECT_TRUE(annotations_.markCurrentClip());
    EXPECT_THAT(clips(), ElementsAre(Pair(1, 2), Pair(3, 4.5), Pair(5, 6)));
    EXPECT_EQ(annotations_.markedClips[1].highlights.size(), 1U);
    EXPECT_THAT(highlights(), ElementsAre(9)) << "the whole source again";
    EXPECT_EQ(annotations_.trimRange, std::nullopt);
    EXPECT_EQ(annotations_.editingClipID, std::nullopt);

    annotations_.editMarkedClip(idOf(1));
    EXPECT_THAT(highlights(), ElementsAre(3.5));
    annotations_.dragTrimStart(3.6);
    annotations_.editMarkedClip(idOf(0));
    EXPECT_THAT(trim(), Pair(1, 2));
    annotations_.setTrim(std::nullopt);
    EXPECT_THAT(highlights(), ElementsAre(9));
    EXPECT_THAT(clips()[1], Pair(3, 4.5)) << "leaving an edit discards it";
}

TEST_F(AnnotationsOfAMovie, AddAnEditedClipAgainIfItWasRemoved) {
    mark(1, 2);
    mark(3, 4);
    annotations_.editMarkedClip(idOf(0));
    annotations_.unmark(idOf(0));
    EXPECT_TRUE(annotations_.hasUnsavedEdits());
    annotations_.markCurrentClip();
    EXPECT_THAT(clips(), ElementsAre(Pair(3, 4), Pair(1, 2)));
    EXPECT_FALSE(annotations_.markCurrentClip()) << "no trim";
}

/// Carries out all operations in random order, as a session does, and checks the invariants that the program
/// relies on.
class RandomOperations : public testing::Test {
protected:
    void step() {
        const Annotations before = now_;
        const int kind = pick(15);
        if (kind == 13 || kind == 14) {
            now_ = kind == 13 ? history_.undo(now_) : history_.redo(now_);
        } else if (!carryOut(kind)) {
            EXPECT_TRUE(identical(now_, before)) << "its conditions were not met";
        } else if (isStep(kind)) {
            history_.record(before);
        }
    }

    void expectInvariants() const {
        EXPECT_TRUE(std::ranges::is_sorted(now_.highlights, {}, &Highlight::timestamp));
        EXPECT_TRUE(std::ranges::is_sorted(now_.fullViewHighlights, {}, &Highlight::timestamp));
        EXPECT_TRUE(now_.trimRange || !now_.editingClipID);
        EXPECT_TRUE(now_.editingClipID || now_.fullViewHighlights.empty());
        if (now_.trimRange) {
            expectInside(*now_.trimRange);
        }
        std::set<Uuid> ids;
        for (const MarkedClip& clip : now_.markedClips) {
            expectInside(clip.range);
            EXPECT_TRUE(ids.insert(clip.id).second);
        }
        for (const auto* highlights : {&now_.highlights, &now_.fullViewHighlights}) {
            ids.clear();
            for (const Highlight& highlight : *highlights) {
                EXPECT_TRUE(ids.insert(highlight.id).second);
            }
        }
    }

    void expectToBeReadAsWritten() const {
        AnnotationsDocument document;
        document.ofJournal = true;
        document.work.annotations = now_;
        EXPECT_TRUE(identical(parseAnnotations(annotationsText(document)).work, document.work));
    }

    void expectUndoThenRedoIsTheIdentity() {
        if (history_.canUndo()) {
            const Annotations before = now_;
            now_ = history_.redo(history_.undo(now_));
            EXPECT_TRUE(identical(now_, before));
        }
    }

    int undoSteps() {
        UndoHistory copy = history_;
        Annotations annotations = now_;
        int steps = 0;
        for (; copy.canUndo(); ++steps) {
            annotations = copy.undo(annotations);
        }
        return steps;
    }

private:
    bool carryOut(int kind) {
        switch (kind) {
        case 0:
        case 1:
        case 2: return now_.commit(pick(4) == 0 ? movedHighlight() : highlightAt(seconds()));
        case 3: return now_.deleteHighlight(anyHighlight().id);
        case 4: return setAnyTrim();
        case 5: return now_.setTrim(std::nullopt);
        case 6: return now_.dragTrimStart(seconds() * 1.5 - 0.5);
        case 7: return now_.dragTrimEnd(seconds() * 1.5 - 0.5, duration);
        case 8: return now_.markInPoint(sessionTime(seconds()), duration, seconds());
        case 9: return now_.markOutPoint(sessionTime(seconds()), duration);
        case 10: return now_.markCurrentClip();
        case 11: return now_.editMarkedClip(anyClip());
        default: return now_.unmark(anyClip());
        }
    }

    /// Drags are part of the step that the first of them began.
    static bool isStep(int kind) { return kind != 6 && kind != 7; }

    static void expectInside(const CMTimeRange& range) {
        EXPECT_GT(range.duration.seconds(), 0.0999);
        EXPECT_GE(range.start, CMTime::zero());
        EXPECT_LE(range.end(), duration);
    }

    int pick(int count) { return std::uniform_int_distribution(0, count - 1)(dice_); }
    double seconds() { return std::uniform_real_distribution(0.0, 2.0)(dice_); }
    bool setAnyTrim() {
        const double start = seconds() * 0.9;
        return now_.setTrim(range(start, start + 0.2));
    }
    /// Mostly one that exists, sometimes one that does not any more.
    Highlight anyHighlight() {
        return now_.highlights.empty() || pick(5) == 0 ? highlightAt(1)
                                                       : now_.highlights[static_cast<std::size_t>(
                                                             pick(static_cast<int>(now_.highlights.size())))];
    }
    Highlight movedHighlight() {
        Highlight highlight = anyHighlight();
        highlight.timestamp = sessionTime(seconds());
        return highlight;
    }
    Uuid anyClip() {
        return now_.markedClips.empty() || pick(5) == 0
                   ? Uuid::random()
                   : now_.markedClips[static_cast<std::size_t>(
                                          pick(static_cast<int>(now_.markedClips.size())))]
                         .id;
    }

    static constexpr CMTime duration{1200, 600};
    Annotations now_;
    UndoHistory history_;
    std::mt19937 dice_{20240607};
};

TEST_F(RandomOperations, KeepTheInvariants) {
    for (int i = 0; i < 10'000 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        step();
        expectInvariants();
        if (i % 10 == 0) {
            expectUndoThenRedoIsTheIdentity();
        }
        if (i % 100 == 0) {
            expectToBeReadAsWritten();
        }
        if (i % 500 == 0) {
            EXPECT_LE(undoSteps(), 50);
        }
    }
}

} // namespace
} // namespace zelvra::test
