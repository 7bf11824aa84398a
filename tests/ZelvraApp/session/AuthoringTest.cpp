// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/SavedDefaults.h"
#include "ZelvraCore/FrameGrab.h"

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class Authoring : public SessionFixture {
protected:
    void addThere(double seconds) {
        seek(seconds);
        run(session_->addHighlightAtCurrentTime());
        ASSERT_TRUE(session_->draft()) << session_->errorMessage().toStdString();
    }
};

TEST_F(Authoring, NeedsAClip) {
    run(session_->addHighlightAtCurrentTime());
    run(session_->editHighlight(draftAt(1).highlight()));
    session_->commitDraft();
    EXPECT_FALSE(session_->draft());
    EXPECT_FALSE(session_->canUndo());
}

TEST_F(Authoring, BeginsWithACircleOnTheFrameOnScreen) {
    const std::filesystem::path file = clip("one.mov");
    open(file);
    addThere(1.21);
    const HighlightDraft& draft = *session_->draft();
    EXPECT_EQ(draft.timestamp, session_->player().currentTime());
    EXPECT_EQ(draft.frame.raster().rgba, extractFrame(file, {36, 30}).raster().rgba);
    EXPECT_EQ(draft.shape.kind, HighlightShapeKind::circle);
    EXPECT_EQ(draft.shape.p1, (Point{0.5, 0.5}));
    EXPECT_NEAR(draft.shape.p2.x, 0.53375, 1e-12);
    EXPECT_NEAR(draft.circleRadiusRatio(), 0.06, 1e-12);
    EXPECT_EQ(draft.durationSec, 3);
    EXPECT_FALSE(draft.isEditing);

    session_->commitDraft();
    EXPECT_FALSE(session_->showDefaultsScopePrompt());
    ASSERT_EQ(session_->highlights().size(), 1U);
    EXPECT_TRUE(identical(session_->highlights()[0].duration, CMTime{1800, 600}));
}

TEST_F(Authoring, PausesAPlayingClipAndKeepsItPausedOnCancel) {
    open(clip("one.mov", {.frames = 300}));
    session_->player().play();
    EXPECT_TRUE(comesTrue([&] { return session_->currentTime().seconds() > 0.3; }));
    run(session_->addHighlightAtCurrentTime());
    EXPECT_EQ(session_->player().rate(), 0);
    ASSERT_TRUE(session_->draft());
    EXPECT_EQ(session_->draft()->timestamp, session_->player().currentTime());
    session_->setDraft(std::nullopt);
    EXPECT_FALSE(session_->canUndo());
    EXPECT_TRUE(session_->highlights().empty());
}

TEST_F(Authoring, AnnotatesTheVeryFirstAndTheVeryLastFrame) {
    const std::filesystem::path file = clip("one.mov", {.sound = SoundCodec::aac, .soundSeconds = 3});
    open(file);
    addThere(0);
    EXPECT_EQ(session_->draft()->timestamp, CMTime::zero());
    session_->commitDraft();
    session_->player().play();
    EXPECT_TRUE(comesTrue([&] { return session_->previewHighlight() || session_->player().rate() == 0; }));
    addThere(100);
    EXPECT_EQ(session_->draft()->frame.raster().rgba, extractFrame(file, {59, 30}).raster().rgba);
}

TEST_F(Authoring, EditsAHighlightAgainInItsPlace) {
    open(clip("one.mov"));
    const Highlight early = add(0.5);
    const Highlight late = add(1.5);
    run(session_->editHighlight(early));
    ASSERT_TRUE(session_->draft());
    EXPECT_TRUE(session_->draft()->isEditing);
    EXPECT_NEAR(session_->player().currentTime().seconds(), 0.5, 1e-9);

    HighlightDraft changed = *session_->draft();
    changed.timestamp = sessionTime(1.7);
    changed.durationSec = 2;
    session_->setDraft(changed);
    session_->commitDraft();
    EXPECT_THAT(moments(), ElementsAre(1.5, 1.7));
    EXPECT_EQ(session_->highlights()[1].id, early.id);
    EXPECT_EQ(session_->highlights()[1].shape.id, early.shape.id);
    EXPECT_TRUE(identical(session_->highlights()[1].duration, CMTime{1200, 600}));
    EXPECT_TRUE(identical(session_->highlights()[0], late));
}

TEST_F(Authoring, KeepsTheOrderOfHighlightsAtOneMoment) {
    open(clip("one.mov"));
    const Highlight first = add(1);
    const Highlight second = add(1);
    add(0.5);
    EXPECT_EQ(session_->highlights()[1].id, first.id);
    EXPECT_EQ(session_->highlights()[2].id, second.id);
    session_->deleteHighlight(session_->highlights()[1]);
    EXPECT_EQ(session_->highlights()[1].id, second.id);
    session_->undo();
    EXPECT_EQ(session_->highlights()[1].id, first.id);
}

TEST_F(Authoring, AsksForTheScopeOfANewStyleOnly) {
    open(clip("one.mov"));
    const double aspect = 320 / 180.0;
    const auto promptAfter = [&](HighlightShapeKind kind, double radius) {
        HighlightDraft draft = draftAt(1);
        const HighlightDefaults style = session_->clipDefaults();
        draft.shape = {Uuid::random(), kind, {0.5, 0.5}, {0.5 + radius / aspect, 0.5}, style.color, 0.004};
        session_->setShowDefaultsScopePrompt(false);
        session_->setDraft(draft);
        session_->commitDraft();
        return session_->showDefaultsScopePrompt();
    };
    EXPECT_FALSE(promptAfter(HighlightShapeKind::circle, 0.06005));
    EXPECT_TRUE(promptAfter(HighlightShapeKind::circle, 0.0602));
    EXPECT_FALSE(promptAfter(HighlightShapeKind::arrow, 0.4));
}

TEST_F(Authoring, ReportsAMissingFrame) {
    open(clip("one.mov"));
    Highlight beyond = draftAt(1).highlight();
    beyond.timestamp = sessionTime(50);
    run(session_->editHighlight(beyond));
    EXPECT_THAT(session_->errorMessage().toStdString(), StartsWith("Frame extraction failed: "));
    EXPECT_FALSE(session_->draft());
    EXPECT_FALSE(session_->canUndo());
}

class Defaults : public SessionFixture {
protected:
    static HighlightDefaults red(double duration = 2) { return {{1, 0, 0, 1}, 0.06, 0.01, duration}; }
    void commit(const HighlightDefaults& style) {
        HighlightDraft draft = draftAt(1, style.durationSec);
        draft.shape.kind = HighlightShapeKind::arrow;
        draft.shape.color = style.color;
        draft.shape.strokeWidthRatio = style.strokeWidthRatio;
        session_->setDraft(draft);
        session_->commitDraft();
    }
    static HighlightDefaults saved(const PreferenceStore& store) {
        return loadFromUserDefaults(PreferenceStore(store.file()));
    }
};

TEST_F(Defaults, ApplyToTheScopeThatTheUserChooses) {
    const HighlightDefaults factory = HighlightDefaults::factory();
    const std::filesystem::path file = clip("one.mov");
    open(file);
    commit(red());
    EXPECT_TRUE(session_->showDefaultsScopePrompt());
    session_->applyPendingDefaults(DefaultsScope::justThisClip);
    EXPECT_TRUE(identical(session_->clipDefaults(), red()));
    EXPECT_TRUE(identical(session_->sessionDefaults(), factory));
    open(file);
    EXPECT_TRUE(identical(session_->clipDefaults(), factory));

    commit(red());
    session_->applyPendingDefaults(DefaultsScope::forThisSession);
    EXPECT_TRUE(identical(session_->sessionDefaults(), red()));
    EXPECT_TRUE(identical(saved(preferences_), factory));

    commit(red(4));
    session_->applyPendingDefaults(DefaultsScope::always);
    EXPECT_TRUE(identical(saved(preferences_), red(4)));
}

TEST_F(Defaults, ApplyOncePerCommitAndNotOnEscape) {
    open(clip("one.mov"));
    session_->applyPendingDefaults(DefaultsScope::always);
    EXPECT_TRUE(identical(session_->clipDefaults(), HighlightDefaults::factory()));
    commit(red());
    session_->setShowDefaultsScopePrompt(false);
    EXPECT_TRUE(identical(session_->clipDefaults(), HighlightDefaults::factory()));
    commit(red(5));
    session_->applyPendingDefaults(DefaultsScope::justThisClip);
    EXPECT_EQ(session_->clipDefaults().durationSec, 5);
    session_->applyPendingDefaults(DefaultsScope::always);
    EXPECT_TRUE(identical(session_->sessionDefaults(), HighlightDefaults::factory()));
}

TEST_F(Defaults, AreAppliedOnceAfterSaving) {
    open(clip("one.mov"));
    commit(red());
    session_->applyPendingDefaults(DefaultsScope::always);
    HighlightDefaults later = red();
    later.durationSec = 6;
    commit(later);
    session_->applyPendingDefaults(DefaultsScope::justThisClip);
    wait(0.2);
    EXPECT_EQ(session_->clipDefaults().durationSec, 6)
        << "the notification of our own saving changes nothing";
}

TEST_F(Defaults, FollowTheSettingsAtOnce) {
    open(clip("one.mov"));
    commit(red());
    session_->applyPendingDefaults(DefaultsScope::forThisSession);
    preferences_.write(preferences::previewEnabled, false);
    wait(0.05);
    EXPECT_TRUE(identical(session_->clipDefaults(), red())) << "another preference does not count";
    PreferenceStore settings(preferences_.file());
    settings.write(preferences::defaultColorHex, QStringLiteral("#00FF00"));
    EXPECT_TRUE(comesTrue([&] { return session_->sessionDefaults().color.green == 1; }));
    EXPECT_EQ(session_->clipDefaults().color.green, 1);
    EXPECT_EQ(session_->clipDefaults().durationSec, 3);
}

} // namespace
} // namespace zelvra::test
