// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/session/Background.h"

#include <fstream>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Opening : public SessionFixture {
protected:
    std::string openName() const {
        return session_->videoFile() ? session_->videoFile()->filename().string() : "";
    }
    std::vector<std::string> recentNames() const {
        std::vector<std::string> names;
        for (const RecentItem& item : session_->recents()) {
            names.push_back(item.path.section('/', -1).toStdString());
        }
        return names;
    }
    void makeFolder() {
        for (const char* name : {"clips/clip10.mov", "clips/clip2.MP4", "clips/clip1.m4v"}) {
            clip(name);
        }
        std::ofstream(folder_ / "clips" / "notes.txt") << "no clip";
    }
};

TEST_F(Opening, StartsWithNothingOpen) {
    EXPECT_FALSE(session_->videoFile());
    EXPECT_FALSE(session_->timelineHasContent());
    EXPECT_FALSE(session_->canExport());
    EXPECT_EQ(session_->queueLabel(), "");
    EXPECT_TRUE(identical(session_->clipDefaults(), HighlightDefaults::factory()));
}

TEST_F(Opening, LoadsAClipAndForgetsThePreviousOne) {
    open(clip("one.mov"));
    add(0.5);
    session_->setTrim(range(0.2, 1.5));
    session_->markCurrentClip();
    session_->setErrorMessage("old");
    open(clip("“two” 🏀.mp4"));
    EXPECT_EQ(openName(), "“two” 🏀.mp4");
    EXPECT_EQ(session_->sourceInfo()->displaySize, (Size{320, 180}));
    EXPECT_EQ(session_->player().rate(), 0);
    EXPECT_FALSE(session_->timelineHasContent());
    EXPECT_FALSE(session_->canUndo());
    EXPECT_THAT(recentNames(), ElementsAre("“two” 🏀.mp4", "one.mov"));
    EXPECT_THAT(desktop_.noted, ElementsAre(folder_ / "one.mov", folder_ / "“two” 🏀.mp4"));
    EXPECT_EQ(RecentItem::loadFromUserDefaults(PreferenceStore(preferences_.file())), session_->recents());
}

TEST_F(Opening, KeepsTheOpenClipIfAnotherCannotBeLoaded) {
    open(clip("one.mov"));
    add(0.5);
    std::ofstream(folder_ / "broken.mov") << "no movie at all";
    for (const char* name : {"broken.mov", "missing.mov", ""}) {
        run(session_->load(folder_ / name));
        EXPECT_THAT(session_->errorMessage().toStdString(), StartsWith("Failed to load: ")) << name;
        EXPECT_EQ(openName(), "one.mov");
        EXPECT_THAT(moments(), ElementsAre(0.5));
    }
    EXPECT_THAT(recentNames(), ElementsAre("one.mov"));
}

TEST_F(Opening, ReportsAMovieThatIsDamagedBeforeThePlayerReadsIt) {
    const std::filesystem::path whole = clip("whole.mov");
    const std::filesystem::path damaged = clip("damaged.mov", {.indexFirst = true});
    QCoro::Task<> loading = session_->load(damaged);
    ASSERT_TRUE(finishWorkers(std::chrono::seconds(20)));
    std::filesystem::resize_file(damaged, 1000);
    run(std::move(loading));
    EXPECT_EQ(session_->videoFile(), damaged) << "its index was read in time";
    EXPECT_TRUE(comesTrue([&] { return !session_->errorMessage().isEmpty(); }));
    EXPECT_THAT(session_->errorMessage().toStdString(),
                StartsWith("Failed to load: “damaged.mov” cannot be played: "));
    EXPECT_FALSE(session_->player().isReady());
    open(whole);
}

TEST_F(Opening, WorksThroughAFolderInNaturalOrder) {
    makeFolder();
    run(session_->loadFolder(folder_ / "clips/"));
    EXPECT_EQ(openName(), "clip1.m4v");
    EXPECT_EQ(session_->queueLabel(), "1 of 3");
    EXPECT_EQ(session_->recents().front().isFolder, true);

    run(session_->previousClip());
    EXPECT_EQ(openName(), "clip1.m4v");
    run(session_->nextClip());
    EXPECT_EQ(openName(), "clip2.MP4");
    run(session_->nextClip());
    run(session_->nextClip());
    EXPECT_EQ(openName(), "clip10.mov");
    EXPECT_EQ(session_->queueLabel(), "3 of 3");
    EXPECT_EQ(session_->recents().size(), 1U);
}

TEST_F(Opening, KeepsTheNewPlaceInTheQueueIfAClipIsMissing) {
    makeFolder();
    run(session_->loadFolder(folder_ / "clips"));
    std::filesystem::remove(folder_ / "clips/clip2.MP4");
    run(session_->nextClip());
    EXPECT_THAT(session_->errorMessage().toStdString(), StartsWith("Failed to load: "));
    EXPECT_EQ(openName(), "clip1.m4v");
    EXPECT_EQ(session_->queueLabel(), "2 of 3");
    run(session_->nextClip());
    EXPECT_EQ(openName(), "clip10.mov");
}

TEST_F(Opening, LeavesTheFolderOnlyForAClipOutsideIt) {
    makeFolder();
    run(session_->loadFolder(folder_ / "clips"));
    run(session_->load(folder_ / "clips" / "clip10.mov"));
    EXPECT_EQ(session_->queueLabel(), "3 of 3");
    run(session_->load(clip("other.mov")));
    EXPECT_EQ(session_->queueLabel(), "");
    EXPECT_FALSE(session_->canGoNext());
}

TEST_F(Opening, ReportsAFolderWithoutClips) {
    open(clip("one.mov"));
    std::filesystem::create_directory(folder_ / "empty one");
    for (const char* name : {"empty one", "empty one/", "missing"}) {
        run(session_->loadFolder(folder_ / name));
        const std::string known = std::string(name).substr(0, std::string(name).find('/'));
        EXPECT_EQ(session_->errorMessage().toStdString(),
                  "No .mov/.mp4/.m4v files found in “" + known + "”.");
    }
    EXPECT_EQ(openName(), "one.mov");
}

TEST_F(Opening, QueuesTwoThousandClipsAndNamesOfEveryKind) {
    const std::filesystem::path first = clip("many/clip 1.mov");
    for (int i = 2; i <= 2000; ++i) {
        std::filesystem::create_hard_link(first, folder_ / "many" / ("clip " + std::to_string(i) + ".mov"));
    }
    const std::string longest(251, 'x');
    for (const std::string& name : {longest, std::string("no text \xff"), std::string("100% #1?")}) {
        std::filesystem::create_hard_link(first, folder_ / "many" / (name + ".mov"));
    }
    run(session_->loadFolder(folder_ / "many"));
    ASSERT_EQ(session_->clipQueue().size(), 2003U);
    EXPECT_EQ(session_->clipQueue()[1].filename(), "clip 1.mov");
    EXPECT_EQ(session_->clipQueue()[2000].filename(), "clip 2000.mov");
    const std::vector<std::filesystem::path> queue = session_->clipQueue();
    for (const std::filesystem::path& path : queue) {
        if (!path.filename().string().starts_with("clip ")) {
            open(path);
            EXPECT_EQ(session_->videoFile(), path);
        }
    }
}

TEST_F(Opening, OpensTheFirstOfWhatTheDesktopAsksFor) {
    makeFolder();
    const std::filesystem::path lone = clip("lone.mov");
    const auto url = [](const std::filesystem::path& path) { return QUrl::fromLocalFile(path.c_str()); };
    session_->handleOpenedURLs({});
    session_->handleOpenedURLs({url(lone), url(folder_ / "clips")});
    EXPECT_TRUE(comesTrue([&] { return openName() == "lone.mov"; }));
    session_->handleOpenedURLs({url(folder_ / "clips"), url(lone)});
    EXPECT_TRUE(comesTrue([&] { return openName() == "clip1.m4v"; }));
}

TEST_F(Opening, OpensARecentItemAsWhatItIsNow) {
    const std::filesystem::path lone = clip("lone.mov");
    makeFolder();
    session_->openRecent({QString::fromStdString(lone), true});
    EXPECT_TRUE(comesTrue([&] { return openName() == "lone.mov"; }));
    session_->openRecent({QString::fromStdString(folder_ / "clips"), false});
    EXPECT_TRUE(comesTrue([&] { return session_->recents().size() == 2; }));
    EXPECT_EQ(session_->queueLabel(), "1 of 3");

    std::filesystem::remove(lone);
    session_->openRecent({QString::fromStdString(lone), false});
    EXPECT_TRUE(comesTrue([&] { return !session_->errorMessage().isEmpty(); }));
    EXPECT_EQ(session_->errorMessage(), "“lone.mov” can't be found. It may have been moved or deleted.");
    EXPECT_THAT(recentNames(), ElementsAre("clips"));
}

TEST_F(Opening, ShowsThePanelsWithTheirTexts) {
    session_->presentOpenVideoPanel();
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::movie);
    EXPECT_EQ(desktop_.asked->prompt, "Open");
    EXPECT_EQ(desktop_.asked->message, "Choose a video clip to annotate.");
    makeFolder();
    desktop_.answer = folder_ / "clips";
    session_->presentOpenFolderPanel();
    EXPECT_EQ(desktop_.asked->choice, OpenPanelRequest::Choice::folder);
    EXPECT_EQ(desktop_.asked->prompt, "Open Folder");
    EXPECT_EQ(desktop_.asked->message, "Choose a folder of clips to work through in order.");
    EXPECT_TRUE(comesTrue([&] { return openName() == "clip1.m4v"; }));
}

TEST_F(Opening, PublishesThatWorkIsUnderway) {
    const auto seen = [this](auto changed, auto isUnderway) {
        auto values = std::make_shared<std::vector<bool>>();
        QObject::connect(session_.get(), changed,
                         [this, values, isUnderway] { values->push_back((*session_.*isUnderway)()); });
        return values;
    };
    const auto opening = seen(&AppState::isOpeningChanged, &AppState::isOpening);
    const auto grabbing = seen(&AppState::isGrabbingFrameChanged, &AppState::isGrabbingFrame);
    std::ofstream(folder_ / "broken.mov") << "no movie at all";
    run(session_->load(folder_ / "broken.mov"));
    EXPECT_THAT(*opening, ElementsAre(true, false));
    open(clip("one.mov"));
    run(session_->addHighlightAtCurrentTime());
    EXPECT_THAT(*opening, ElementsAre(true, false, true, false));
    EXPECT_THAT(*grabbing, ElementsAre(true, false));
}

TEST_F(Opening, AsksBeforeWorkIsLost) {
    open(clip("one.mov"));
    session_->requestCloseVideo();
    EXPECT_FALSE(session_->videoFile());

    open(folder_ / "one.mov");
    session_->markInPoint();
    session_->requestCloseVideo();
    EXPECT_TRUE(session_->showCloseConfirmation());
    EXPECT_TRUE(session_->videoFile());
    session_->setShowCloseConfirmation(false);
    session_->closeVideo();
    EXPECT_FALSE(session_->videoFile());
    EXPECT_FALSE(session_->sourceInfo());
    EXPECT_EQ(session_->player().currentItem(), nullptr);
    EXPECT_FALSE(session_->timelineHasContent());
    EXPECT_EQ(session_->recents().size(), 1U);
}

} // namespace
} // namespace zelvra::test
