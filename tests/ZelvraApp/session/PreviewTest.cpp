// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"

namespace zelvra::test {
namespace {

class Preview : public SessionFixture {
protected:
    void SetUp() override { open(clip("one.mov", {.frames = 150, .sound = SoundCodec::aac})); }

    /// Plays until `end`. The highlights that were previewed, each while the player was paused after its
    /// moment.
    std::vector<Uuid> playUntil(double end) {
        std::vector<Uuid> shown;
        const auto connection = QObject::connect(session_.get(), &AppState::previewHighlightChanged, [&] {
            if (const auto& highlight = session_->previewHighlight()) {
                EXPECT_EQ(session_->player().rate(), 0);
                EXPECT_GE(session_->currentTime(), highlight->timestamp);
                shown.push_back(highlight->id);
            }
        });
        session_->player().play();
        EXPECT_TRUE(comesTrue([&] { return session_->currentTime().seconds() >= end; }));
        session_->player().pause();
        QObject::disconnect(connection);
        return shown;
    }
};

TEST_F(Preview, PausesOncePerMomentAndResumes) {
    const Highlight first = add(0.5, 0.4);
    const Highlight second = add(1.5, 0.05);
    add(1.5, 2);
    EXPECT_THAT(playUntil(2.5), testing::ElementsAre(first.id, second.id)) << "one for each moment";
}

TEST_F(Preview, LastsAsLongAsItsFreeze) {
    const auto length = [](double seconds) {
        return AppState::previewLength(draftAt(1, seconds).highlight()).count();
    };
    EXPECT_EQ(length(0.4), 400);
    EXPECT_EQ(length(0.05), 100) << "never shorter than a tenth of a second";
    EXPECT_EQ(length(1e6), 24 * 3600 * 1000) << "what a timer can count";
}

TEST_F(Preview, FollowsThePreferenceWhilePlaying) {
    add(0.5);
    preferences_.write(preferences::previewEnabled, false);
    EXPECT_TRUE(playUntil(1).empty());
}

TEST_F(Preview, StartsOnlyWhenPlaybackCrossesAMoment) {
    add(2.0, 0.1);
    session_->player().play();
    const auto crossing = [&](double from, double to) {
        session_->observePlaybackTime(sessionTime(from));
        session_->cancelHighlightPreview();
        session_->player().play();
        session_->observePlaybackTime(sessionTime(to));
        return session_->previewHighlight().has_value();
    };
    EXPECT_TRUE(crossing(1.9, 2.1));
    EXPECT_TRUE(crossing(1.9, 2.0)) << "exactly there";
    EXPECT_FALSE(crossing(2.0, 2.1)) << "left, not reached";
    EXPECT_FALSE(crossing(2.1, 1.9)) << "backwards";
    EXPECT_FALSE(crossing(1.6, 2.1)) << "a jump of half a second";
    EXPECT_FALSE(crossing(1.0, 2.3));
    session_->setDraft(draftAt(3));
    EXPECT_FALSE(crossing(1.9, 2.1)) << "the editor is open";
    session_->setDraft(std::nullopt);
    session_->player().pause();
    session_->observePlaybackTime(sessionTime(1.9));
    session_->observePlaybackTime(sessionTime(2.1));
    EXPECT_FALSE(session_->previewHighlight()) << "paused";
}

TEST_F(Preview, StaysPausedIfItIsCancelled) {
    add(0.5, 0.3);
    session_->player().play();
    ASSERT_TRUE(comesTrue([&] { return session_->previewHighlight().has_value(); }));
    session_->cancelHighlightPreview();
    wait(0.5);
    EXPECT_EQ(session_->player().rate(), 0);
    run(session_->addHighlightAtCurrentTime());
    EXPECT_TRUE(session_->draft());
}

/// A preview that goes on over other pictures would start to play them by itself.
TEST_F(Preview, EndsWithEveryMoveAndWithItsClip) {
    const std::filesystem::path other = clip("other.mov");
    const std::vector<std::pair<const char*, std::function<void()>>> moves{
        {"seek", [&] { session_->seek(sessionTime(3)); }},
        {"scrub", [&] { session_->scrub(sessionTime(3)); }},
        {"step", [&] { session_->step(1); }},
        {"pause", [&] { session_->pause(); }},
        {"edit a highlight", [&] { run(session_->editHighlight(session_->highlights()[0])); }},
        {"edit a clip", [&] { session_->editMarkedClip(session_->markedClips()[0]); }},
        {"close", [&] { session_->closeVideo(); }},
        {"open", [&] { run(session_->load(other)); }},
    };
    for (const auto& [name, move] : moves) {
        SCOPED_TRACE(name);
        open(folder_ / "one.mov");
        session_->setTrim(range(3, 4));
        session_->markCurrentClip();
        add(0.2, 60);
        seek(0);
        session_->play();
        ASSERT_TRUE(comesTrue([&] { return session_->previewHighlight().has_value(); }));
        move();
        EXPECT_FALSE(session_->previewHighlight());
        EXPECT_EQ(session_->player().rate(), 0);
    }
}

TEST_F(Preview, EndsNormallyIfItsHighlightIsDeleted) {
    const Highlight highlight = add(0.5, 0.3);
    session_->player().play();
    ASSERT_TRUE(comesTrue([&] { return session_->previewHighlight().has_value(); }));
    session_->deleteHighlight(highlight);
    EXPECT_TRUE(comesTrue([&] { return !session_->previewHighlight() && session_->player().rate() > 0; }));
}

TEST_F(Preview, IsNotStartedByPausedSeeks) {
    add(2.0);
    seek(1.9);
    EXPECT_TRUE(comesTrue([&] { return session_->currentTime() == sessionTime(1.9); }));
    seek(2.1);
    EXPECT_TRUE(comesTrue([&] { return session_->currentTime() == sessionTime(2.1); }));
    EXPECT_FALSE(session_->previewHighlight());
}

} // namespace
} // namespace zelvra::test
