// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

/// Whole jobs of a coach, from the opened clips to the exported movies.
class Story : public SessionFixture {};

TEST_F(Story, WorksThroughAFolderOfClips) {
    clip("training/serve 2.mov");
    clip("training/serve 10.mov", {.codec = MovieCodec::hevc});
    clip("training/serve 1.mp4", {.codec = MovieCodec::mpeg4, .container = "mp4"});
    desktop_.answer = folder_ / "training";
    session_->presentOpenFolderPanel();
    ASSERT_TRUE(comesTrue([&] { return session_->player().isReady(); }));
    EXPECT_EQ(session_->queueLabel(), "1 of 3");

    std::vector<std::string> stories;
    while (true) {
        seek(0.5);
        QCoro::Task<bool> stepping = session_->player().step(1);
        ASSERT_TRUE(QCoro::waitFor(std::move(stepping)));
        run(session_->addHighlightAtCurrentTime());
        ASSERT_TRUE(session_->draft()) << session_->errorMessage().toStdString();
        HighlightDraft drawn = draftAt(0, 1, 7);
        drawn.timestamp = session_->draft()->timestamp;
        session_->setDraft(drawn);
        session_->commitDraft();
        if (session_->showDefaultsScopePrompt()) {
            session_->setShowDefaultsScopePrompt(false);
            session_->applyPendingDefaults(DefaultsScope::forThisSession);
        }
        add(1, 1, 8);
        session_->undo();
        run(session_->exportMovies());
        ASSERT_EQ(session_->errorMessage(), "");
        stories.push_back(story(*session_->lastExportFile()));
        session_->setShowPostExportDialog(false);
        if (!session_->canGoNext()) {
            break;
        }
        run(session_->nextClip());
        ASSERT_TRUE(comesTrue([&] { return session_->player().isReady(); }));
        EXPECT_EQ(session_->clipDefaults().durationSec, 1) << "the style of this session";
    }
    EXPECT_THAT(stories, testing::Each("0-15, 16 frozen 1.0 s #7, 16-59"));
    EXPECT_EQ(stories.size(), 3U);
}

TEST_F(Story, CutsARecordingWhileItPlays) {
    open(clip("game.mov", {.frames = 450, .sound = SoundCodec::aac}));
    preferences_.write(preferences::clipDefaultLengthSec, 0.5);
    session_->player().setDefaultRate(4);
    session_->player().play();
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(comesTrue([&] { return session_->currentTime().seconds() > 0.1 + i * 0.6; }));
        session_->markInPoint();
    }
    session_->player().pause();
    ASSERT_EQ(session_->markedClips().size(), 20U);

    // Two are refined, one with a highlight; the changes to a third are thrown away, a fourth is removed.
    session_->editMarkedClip(session_->markedClips()[2]);
    session_->dragTrimEnd(3);
    session_->dragTrimStart(2);
    add(2.5, 0.5, 4);
    session_->markCurrentClip();
    session_->editMarkedClip(session_->markedClips()[5]);
    session_->dragTrimEnd(4.5);
    session_->dragTrimStart(4);
    session_->markCurrentClip();
    const auto untouched = clips()[7];
    session_->editMarkedClip(session_->markedClips()[7]);
    session_->dragTrimStart(0);
    add(1);
    session_->setTrim(std::nullopt);
    session_->unmark(session_->markedClips()[19].id);

    run(session_->exportMovies());
    ASSERT_EQ(session_->errorMessage(), "");
    const auto exported = [&](const char* number) {
        return story(folder_ / "highlighted" / ("game_clip_" + std::string(number) + "_highlighted.mov"));
    };
    EXPECT_EQ(exported("03"), "60-74, 75 frozen 0.5 s #4, 75-89");
    EXPECT_EQ(exported("06"), "120-134");
    EXPECT_THAT(clips()[7], untouched);
    EXPECT_EQ(session_->lastExportFile()->filename(), "game_clip_19_highlighted.mov");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "highlighted" / "game_clip_20_highlighted.mov"));
}

TEST_F(Story, CutsFourHoursIntoThreeHundredClips) {
    open(clip("day.mp4",
              {.width = 64, .height = 36, .rate = 1, .frames = 4 * 3600, .gop = 10, .container = "mp4"}));
    for (int i = 0; i < 300; ++i) {
        session_->setTrim(range(i * 48, i * 48 + 5));
        if (i == 299) {
            add(i * 48 + 2, 2, 7);
        }
        session_->markCurrentClip();
    }
    run(session_->exportMovies());
    ASSERT_EQ(session_->errorMessage(), "");
    const auto exported = [&](const char* number) {
        return story(folder_ / "highlighted" / ("day_clip_" + std::string(number) + "_highlighted.mp4"));
    };
    EXPECT_EQ(exported("01"), "0-4");
    EXPECT_EQ(exported("150"), "7152-7156");
    EXPECT_EQ(exported("300"), "14352-14353, 14354 frozen 2.0 s #7, 14354-14356");
}

TEST_F(Story, ExportsHighlightsOfRealMovies) {
    for (const char* name : {"phone-13-portrait.MOV", "sport-11-karma.mp4"}) {
        const auto source = sharedMovie(name);
        if (!source) {
            GTEST_SKIP() << "no collection of real movies here";
        }
        const std::filesystem::path file = folder_ / name;
        std::filesystem::copy_file(*source, file);
        open(file);
        seek(session_->sourceInfo()->duration.seconds() / 2);
        run(session_->addHighlightAtCurrentTime());
        ASSERT_TRUE(session_->draft()) << name << session_->errorMessage().toStdString();
        HighlightDraft shorter = *session_->draft();
        shorter.durationSec = 0.5;
        session_->setDraft(shorter);
        session_->commitDraft();
        run(session_->exportMovies());
        EXPECT_EQ(session_->errorMessage(), "") << name;
        const double before = session_->sourceInfo()->duration.seconds();
        open(*session_->lastExportFile());
        EXPECT_NEAR(session_->sourceInfo()->duration.seconds(), before + 0.5, 0.1) << name;
    }
}

} // namespace
} // namespace zelvra::test
