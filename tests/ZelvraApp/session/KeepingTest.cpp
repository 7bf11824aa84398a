// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"

#include <fstream>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

/// Work that is left stays in the journal and is offered when its clip is opened again.
class Keeping : public SessionFixture {
protected:
    void SetUp() override {
        game_ = clip("game.mov", {.frames = 150});
        other_ = clip("other.mov");
    }
    /// Two highlights in the full view, a marked clip with a third.
    void work() {
        session_->setTrim(range(1, 2));
        add(1.5, 1, 3);
        session_->markCurrentClip();
        add(3);
        add(4);
    }
    /// Opens it and waits for the journal's answer. Returns what is offered: highlights and marked clips.
    std::pair<int, int> offerFor(const std::filesystem::path& file) {
        open(file);
        EXPECT_TRUE(comesTrue([&] { return session_->leftWorkIsKnown(); }));
        const auto left = session_->leftWork();
        return left ? std::pair(left->highlights, left->markedClips) : std::pair(0, 0);
    }
    void expectAllWork() {
        EXPECT_THAT(moments(), ElementsAre(3, 4));
        EXPECT_THAT(clips(), ElementsAre(Pair(1, 2)));
        ASSERT_EQ(session_->markedClips().size(), 1U);
        EXPECT_EQ(session_->markedClips()[0].highlights.size(), 1U);
    }

    std::filesystem::path game_;
    std::filesystem::path other_;
};

TEST_F(Keeping, OffersWhatWasLeftAndRestoresItAsOneStep) {
    open(game_);
    work();
    for (const bool quits : {false, true}) {
        SCOPED_TRACE(quits ? "after the program ended" : "after another clip");
        if (quits) {
            restart();
        } else {
            open(other_);
            EXPECT_FALSE(session_->leftWork());
        }
        EXPECT_EQ(offerFor(game_), std::pair(3, 1));
        EXPECT_FALSE(session_->timelineHasContent()) << "it starts empty";
        session_->restoreLeftWork();
        expectAllWork();
        EXPECT_FALSE(session_->leftWork());
        session_->undo();
        EXPECT_FALSE(session_->timelineHasContent());
        EXPECT_TRUE(session_->leftWork()) << "offered again";
        session_->redo();
        expectAllWork();
    }
}

TEST_F(Keeping, KnowsAMovieThatWasRenamedAndMoved) {
    open(game_);
    work();
    session_->closeVideo();
    std::filesystem::create_directory(folder_ / "archive");
    std::filesystem::rename(game_, folder_ / "archive" / "final.mov");
    EXPECT_EQ(offerFor(folder_ / "archive" / "final.mov"), std::pair(3, 1));
    EXPECT_EQ(offerFor(other_), std::pair(0, 0));
}

TEST_F(Keeping, KeepsWhatWasLeftTogetherWithWhatCameSince) {
    open(game_);
    work();
    open(other_);
    ASSERT_EQ(offerFor(game_), std::pair(3, 1));
    add(0.5); // without taking the offer
    restart();
    EXPECT_EQ(offerFor(game_), std::pair(4, 1));
    session_->restoreLeftWork();
    EXPECT_THAT(moments(), ElementsAre(0.5, 3, 4));

    open(other_);
    ASSERT_EQ(offerFor(game_), std::pair(4, 1));
    session_->dismissLeftWork();
    add(2);
    restart();
    EXPECT_EQ(offerFor(game_), std::pair(1, 0)) << "refused, then replaced";
}

TEST_F(Keeping, KeepsTheEditThatWasNotSavedBack) {
    open(game_);
    work();
    session_->editMarkedClip(session_->markedClips()[0]);
    session_->dragTrimEnd(2.5);
    add(2.2);
    restart();
    ASSERT_EQ(offerFor(game_), std::pair(4, 1));
    session_->restoreLeftWork();
    EXPECT_TRUE(session_->editingClipID());
    EXPECT_THAT(span(), Pair(1, 2.5));
    EXPECT_EQ(session_->player().currentItem()->forwardPlaybackEndTime, sessionTime(2.5));
    session_->markCurrentClip();
    EXPECT_THAT(clips(), ElementsAre(Pair(1, 2.5)));
    EXPECT_THAT(moments(), ElementsAre(3, 4)) << "those of the full view";
}

TEST_F(Keeping, ForgetsWhatIsDiscardedAndKeepsWhatIsClosed) {
    open(game_);
    work();
    session_->requestCloseVideo();
    ASSERT_TRUE(session_->showCloseConfirmation());
    session_->setShowCloseConfirmation(false);
    session_->closeAndDiscard();
    EXPECT_EQ(offerFor(game_), std::pair(0, 0));

    add(1, 0.3);
    run(session_->exportMovies());
    session_->requestCloseVideo();
    EXPECT_FALSE(session_->videoFile()) << "all of it is exported: no question";
    EXPECT_EQ(offerFor(game_), std::pair(1, 0));
    session_->restoreLeftWork();
    EXPECT_FALSE(session_->closingLosesWork()) << "what was exported is known too";
    run(session_->exportMovies());
    EXPECT_EQ(session_->lastExportFile()->filename(), "game_highlighted.mov") << "its own is replaced";
}

TEST_F(Keeping, ShowsWhatIsKnownOfEachClip) {
    open(game_);
    work();
    open(other_);
    add(1, 0.3);
    run(session_->exportMovies());
    const auto expectSummaries = [&] {
        EXPECT_TRUE(comesTrue([&] { return session_->rememberedWork(other_) != nullptr; }));
        const WorkKeeper::Summary* game = session_->rememberedWork(game_);
        ASSERT_TRUE(game);
        EXPECT_EQ(*game, (WorkKeeper::Summary{.highlights = 3, .markedClips = 1}));
        EXPECT_TRUE(comesTrue([&] { return session_->rememberedWork(other_)->isExported; }));
    };
    expectSummaries();
    restart();
    expectSummaries();
    EXPECT_TRUE(session_->interruptedClips().empty()) << "it ended properly";
}

TEST_F(Keeping, ReportsAFolderThatCannotBeWrittenOnceAndGoesOn) {
    std::ofstream(folder_ / "state") << "a file is in its place";
    restart();
    open(game_);
    add(1);
    EXPECT_TRUE(comesTrue([&] { return !session_->errorMessage().isEmpty(); }));
    EXPECT_THAT(session_->errorMessage().toStdString(), StartsWith("Unfinished work can't be remembered: "));
    session_->setErrorMessage({});
    add(2);
    EXPECT_THAT(moments(), ElementsAre(1, 2));
    run(session_->load(other_));
    EXPECT_TRUE(session_->showCloseConfirmation()) << "as nothing remembers it";
    EXPECT_EQ(session_->videoFile(), game_);
    EXPECT_EQ(session_->errorMessage(), "");
}

TEST_F(Keeping, AsksBeforeWorkIsReplacedIfNothingIsRemembered) {
    preferences_.write(preferences::rememberWork, false);
    clip("clips/1.mov");
    clip("clips/2.mov");
    const auto url = QUrl::fromLocalFile(other_.c_str());
    const std::vector<std::pair<std::filesystem::path, std::function<void()>>> ways{
        {other_, [&] { run(session_->load(other_)); }},
        {folder_ / "clips/1.mov", [&] { run(session_->loadFolder(folder_ / "clips")); }},
        {folder_ / "clips/2.mov", [&] { run(session_->nextClip()); }},
        {folder_ / "clips/1.mov", [&] { run(session_->previousClip()); }},
        {other_, [&] { session_->handleOpenedURLs({url}); }},
    };
    open(game_);
    for (const auto& [expected, replace] : ways) {
        SCOPED_TRACE(expected);
        const auto before = session_->videoFile();
        add(1);
        replace();
        EXPECT_TRUE(session_->showCloseConfirmation());
        session_->setShowCloseConfirmation(false);
        session_->keepClipOpen();
        EXPECT_EQ(session_->videoFile(), before);
        EXPECT_THAT(moments(), testing::SizeIs(1));
        replace();
        session_->setShowCloseConfirmation(false);
        session_->closeAndDiscard();
        EXPECT_TRUE(comesTrue([&] { return session_->videoFile() == expected; }));
        EXPECT_THAT(moments(), ElementsAre());
    }
    EXPECT_FALSE(std::filesystem::exists(folder_ / "state" / "journal"));
}

TEST_F(Keeping, SavesAndOpensAnnotationsOfAColleague) {
    open(game_);
    work();
    desktop_.answer = folder_ / "for you.json";
    session_->saveAnnotations();
    EXPECT_EQ(desktop_.suggested, folder_ / "game_annotations.json");
    EXPECT_TRUE(comesTrue([&] { return std::filesystem::exists(desktop_.answer); }));

    open(clip("colleague/short.mov", {.frames = 100}));
    add(0.1);
    session_->openAnnotations();
    EXPECT_TRUE(comesTrue([&] { return !session_->errorMessage().isEmpty(); }));
    EXPECT_EQ(session_->errorMessage(), "Annotations beyond the end of “short.mov” were left out.");
    EXPECT_THAT(moments(), ElementsAre(3));
    EXPECT_THAT(clips(), ElementsAre(Pair(1, 2)));
    session_->undo();
    EXPECT_THAT(moments(), ElementsAre(0.1));

    std::ofstream(desktop_.answer) << R"({"version": 2, "unheardOf": 1})";
    session_->openAnnotations();
    EXPECT_TRUE(comesTrue([&] { return session_->errorMessage().contains("newer"); }));
    EXPECT_THAT(session_->errorMessage().toStdString(), HasSubstr("for you.json"));
    EXPECT_THAT(moments(), ElementsAre(0.1));
}

} // namespace
} // namespace zelvra::test
