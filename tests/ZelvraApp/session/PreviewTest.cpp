// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"

#include <QElapsedTimer>

namespace zelvra::test {
namespace {

class Preview : public SessionFixture {
protected:
    void SetUp() override { open(clip("one.mov", {.frames = 150, .sound = SoundCodec::aac})); }

    struct Pause {
        Uuid highlight;
        double at = 0;
        double seconds = 0;
    };
    /// Plays until `end`, and records each preview.
    std::vector<Pause> playUntil(double end) {
        std::vector<Pause> pauses;
        QElapsedTimer clock;
        const auto connection = QObject::connect(session_.get(), &AppState::previewHighlightChanged, [&] {
            if (const auto& shown = session_->previewHighlight()) {
                EXPECT_EQ(session_->player().rate(), 0);
                pauses.push_back({shown->id, session_->player().currentTime().seconds(), 0});
                clock.start();
            } else {
                pauses.back().seconds = static_cast<double>(clock.elapsed()) / 1000;
            }
        });
        session_->player().play();
        EXPECT_TRUE(comesTrue([&] { return session_->currentTime().seconds() >= end; }));
        session_->player().pause();
        QObject::disconnect(connection);
        return pauses;
    }
};

TEST_F(Preview, PausesOncePerMomentForItsDurationAndResumes) {
    const Highlight first = add(0.5, 0.4);
    const Highlight second = add(1.5, 0.05);
    add(1.5, 2);
    const std::vector<Pause> pauses = playUntil(2.5);
    ASSERT_EQ(pauses.size(), 2U);
    EXPECT_EQ(pauses[0].highlight, first.id);
    EXPECT_NEAR(pauses[0].at, 0.5, 0.15);
    EXPECT_NEAR(pauses[0].seconds, 0.4, 0.15);
    EXPECT_EQ(pauses[1].highlight, second.id) << "of several at one moment only the first";
    EXPECT_NEAR(pauses[1].seconds, 0.1, 0.08) << "never shorter than a tenth of a second";
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
