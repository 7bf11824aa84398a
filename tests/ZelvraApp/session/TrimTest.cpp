// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/TrimEditor.h"

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

class Trim : public SessionFixture {
protected:
    void SetUp() override { open(clip("one.mov", {.frames = 300})); }
};

TEST_F(Trim, BoundsPlaybackAfterEveryChange) {
    const auto expectBounds = [&](const char* after, double start, double end) {
        EXPECT_THAT(span(), Pair(start, end)) << after;
        const PlayerItem& item = *session_->player().currentItem();
        const auto& trim = session_->trimRange();
        EXPECT_EQ(item.reversePlaybackEndTime, trim ? trim->start : CMTime::invalid()) << after;
        EXPECT_EQ(item.forwardPlaybackEndTime, trim ? trim->end() : CMTime::invalid()) << after;
    };
    session_->setTrim(range(0.5, 1));
    expectBounds("trim", 0.5, 1);
    session_->dragTrimStart(0.25);
    session_->dragTrimEnd(70);
    expectBounds("drag", 0.25, 10);
    seek(0.75);
    session_->markInPoint();
    expectBounds("in", 0.75, 10);
    seek(1.5);
    session_->markOutPoint();
    expectBounds("out", 0.75, 1.5);
    session_->markCurrentClip();
    expectBounds("mark", -1, -1);
    session_->undo();
    expectBounds("undo", 0.75, 1.5);
    session_->redo();
    expectBounds("redo", -1, -1);
    session_->editMarkedClip(session_->markedClips()[0]);
    expectBounds("edit", 0.75, 1.5);
    session_->setTrim(std::nullopt);
    expectBounds("clear", -1, -1);
}

TEST_F(Trim, StopsPlaybackAtItsEndAndStartsAgainAtItsStart) {
    session_->setTrim(range(1, 1.5));
    seek(1.2);
    session_->player().play();
    EXPECT_TRUE(comesTrue([&] { return session_->player().rate() == 0; }));
    EXPECT_EQ(session_->player().currentTime(), sessionTime(1.5));
    session_->player().play();
    EXPECT_TRUE(comesTrue([&] { return session_->currentTime() < sessionTime(1.4); }));
    EXPECT_GE(session_->currentTime(), sessionTime(1));
}

class TrimInTheView : public Trim {
protected:
    void SetUp() override {
        Trim::SetUp();
        session_->playerController().playerView = &editor();
    }
    TrimEditor& editor() {
        if (!editor_) {
            editor_ = std::make_unique<TrimEditor>(session_->player());
        }
        return *editor_;
    }
    void TearDown() override { editor_.reset(); }
    /// Opens the editor, moves its points and confirms.
    void trim(double in, double out) {
        session_->beginTrim();
        editor().setInPoint(sessionTime(in));
        editor().setOutPoint(sessionTime(out));
        editor().confirm();
        wait(0.01);
    }

    std::unique_ptr<TrimEditor> editor_;
};

TEST_F(TrimInTheView, AppliesWhatIsConfirmed) {
    trim(2, 5);
    EXPECT_THAT(span(), Pair(2, 5));
    session_->beginTrim();
    EXPECT_EQ(editor().inPoint(), sessionTime(2));
    EXPECT_FALSE(editor().canBeginTrimming());
    editor().setInPoint(sessionTime(-1));
    editor().setOutPoint(sessionTime(-1));
    EXPECT_EQ(editor().outPoint(), sessionTime(0.1));
    editor().cancel();
    wait(0.01);
    EXPECT_THAT(span(), Pair(2, 5));
    EXPECT_EQ(session_->player().currentItem()->forwardPlaybackEndTime, sessionTime(5));
}

TEST_F(TrimInTheView, CountsNearlyTheWholeSourceAsNoTrim) {
    trim(2, 5);
    trim(0.03, 9.98);
    EXPECT_EQ(session_->trimRange(), std::nullopt);
    EXPECT_FALSE(session_->player().currentItem()->forwardPlaybackEndTime.isValid());
    trim(0.06, 9.98);
    EXPECT_THAT(span(), Pair(0.06, 9.98));
}

TEST_F(TrimInTheView, DropsThePointsOfAnEarlierMovie) {
    session_->beginTrim();
    editor().setInPoint(sessionTime(4));
    open(folder_ / "one.mov");
    editor().confirm();
    wait(0.01);
    EXPECT_EQ(session_->trimRange(), std::nullopt);
    session_->beginTrim();
    EXPECT_TRUE(editor().isActive()) << "and can be opened again";
}

TEST_F(TrimInTheView, DoesNothingWithoutAView) {
    editor_.reset();
    session_->beginTrim();
    bool returned = false;
    bool answered = false;
    session_->playerController().beginTrim([&](const std::optional<CMTimeRange>& range) {
        EXPECT_TRUE(returned);
        EXPECT_FALSE(range);
        answered = true;
    });
    returned = true;
    EXPECT_TRUE(comesTrue([&] { return answered; }));
}

class MarkedClips : public SessionFixture {
protected:
    void SetUp() override { open(clip("game.mov", {.frames = 300})); }
    void mark(double start, double end) {
        seek(start);
        session_->markInPoint();
        seek(end);
        session_->markOutPoint();
    }
};

TEST_F(MarkedClips, BeginAtThePlayheadAndEndWhereOIsPressed) {
    preferences_.write(preferences::clipDefaultLengthSec, 3.0);
    seek(2);
    session_->markInPoint();
    EXPECT_THAT(clips(), ElementsAre(Pair(2, 5)));
    EXPECT_EQ(session_->activeRoughClipID(), session_->markedClips()[0].id);
    seek(7);
    session_->markOutPoint();
    EXPECT_THAT(clips(), ElementsAre(Pair(2, 7)));
    seek(8);
    session_->markInPoint();
    EXPECT_THAT(clips(), ElementsAre(Pair(2, 7), Pair(8, 10))) << "no further than the source";
}

TEST_F(MarkedClips, HaveTheLengthOfThePreferenceOrHalfAMinute) {
    for (const auto& [stored, length] : {std::pair(1.5, 1.5), {0.0, 10.0}, {-3.0, 10.0}, {60.0, 10.0}}) {
        preferences_.write(preferences::clipDefaultLengthSec, stored);
        session_->markInPoint();
        EXPECT_THAT(clips().back(), Pair(0, length)) << stored;
    }
}

TEST_F(MarkedClips, AreMarkedWhileTheMoviePlays) {
    session_->player().play();
    ASSERT_TRUE(comesTrue([&] { return session_->currentTime().seconds() > 0.2; }));
    session_->markInPoint();
    EXPECT_GT(session_->player().rate(), 0);
    ASSERT_TRUE(comesTrue([&] { return session_->currentTime().seconds() > 0.6; }));
    session_->markOutPoint();
    ASSERT_EQ(clips().size(), 1U);
    EXPECT_NEAR(clips()[0].second, 0.65, 0.3);
}

TEST_F(MarkedClips, MoveThePlayheadWhenTheyAreEditedAndSaved) {
    mark(1, 2);
    mark(3, 4);
    session_->editMarkedClip(session_->markedClips()[1]);
    EXPECT_TRUE(comesTrue([&] { return session_->currentTime() == sessionTime(3); }));
    session_->dragTrimEnd(4.5);
    session_->markCurrentClip();
    EXPECT_THAT(clips(), ElementsAre(Pair(1, 2), Pair(3, 4.5)));
    EXPECT_TRUE(comesTrue([&] { return session_->currentTime() == sessionTime(4.5); }));
}

TEST_F(MarkedClips, GiveWayToTheTrimWhichIsNudgedStepByStep) {
    session_->setTrim(range(4, 6));
    seek(8);
    session_->markInPoint();
    EXPECT_THAT(span(), Pair(5.9, 6));
    seek(3);
    session_->markOutPoint();
    EXPECT_THAT(span(), Pair(5.9, 6));
    EXPECT_THAT(clips(), ElementsAre());
    session_->undo();
    EXPECT_THAT(span(), Pair(4, 6)) << "a nudge that moves nothing is no step";
}

TEST_F(MarkedClips, MayBeHundreds) {
    preferences_.write(preferences::clipDefaultLengthSec, 1.0);
    for (int i = 0; i < 300; ++i) {
        session_->markInPoint();
    }
    EXPECT_EQ(clips().size(), 300U);
    session_->editMarkedClip(session_->markedClips()[299]);
    add(0.5);
    session_->markCurrentClip();
    EXPECT_EQ(session_->markedClips()[299].highlights.size(), 1U);
}

} // namespace
} // namespace zelvra::test
