// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "tests/support/MovieReading.h"

#include <fstream>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class Exporting : public SessionFixture {
protected:
    std::filesystem::path openGame() {
        const std::filesystem::path file = clip("game.mp4", {.sound = SoundCodec::aac, .container = "mp4"});
        open(file);
        return file;
    }
    void mark(double start, double end) {
        session_->setTrim(range(start, end));
        session_->markCurrentClip();
    }
    std::vector<std::string> exported() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_ / "highlighted")) {
            names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }
};

TEST_F(Exporting, NeedsAClipAndSomethingToShow) {
    run(session_->exportMovies());
    openGame();
    session_->setTrim(range(0.5, 1));
    EXPECT_FALSE(session_->canExport()) << "a trim alone is not exported";
    run(session_->exportMovies());
    EXPECT_FALSE(session_->showPostExportDialog());
    EXPECT_FALSE(std::filesystem::exists(folder_ / "highlighted"));
}

TEST_F(Exporting, FreezesTheTrimmedClipOnItsHighlights) {
    const std::filesystem::path file = openGame();
    session_->setTrim(range(0.5, 1.5));
    add(1, 0.5, 3);
    QCoro::Task<> exporting = session_->exportMovies();
    EXPECT_TRUE(session_->isExporting());
    EXPECT_FALSE(session_->canExport());
    run(session_->exportMovies());
    EXPECT_TRUE(session_->isExporting()) << "a second one is not begun";
    run(std::move(exporting));

    EXPECT_EQ(session_->errorMessage(), "");
    EXPECT_EQ(session_->lastExportFile(), folder_ / "highlighted" / "game_highlighted.mp4");
    EXPECT_TRUE(session_->showPostExportDialog());
    EXPECT_TRUE(comesTrue([&] { return session_->exportProgress() == 1; }));
    EXPECT_EQ(story(*session_->lastExportFile()), "15-29, 30 frozen 0.5 s #3, 30-44");
    EXPECT_FALSE(readSound(*session_->lastExportFile()).samples.empty());
    EXPECT_EQ(moments().size(), 1U);

    session_->requestCloseVideo();
    EXPECT_FALSE(session_->videoFile()) << "what is exported can be closed without a question";
}

TEST_F(Exporting, WritesEachMarkedClipAsAMovieOfItsOwn) {
    openGame();
    mark(0, 0.5);
    session_->setTrim(range(0.5, 1));
    add(0.8, 0.3, 5);
    session_->markCurrentClip();
    mark(1, 1.5);
    add(1.9);
    std::vector<double> progress;
    QObject::connect(session_.get(), &AppState::exportProgressChanged, session_.get(),
                     [&] { progress.push_back(session_->exportProgress()); });
    run(session_->exportMovies());

    EXPECT_THAT(exported(), ElementsAre("game_clip_01_highlighted.mp4", "game_clip_02_highlighted.mp4",
                                        "game_clip_03_highlighted.mp4"));
    EXPECT_EQ(session_->lastExportFile()->filename(), "game_clip_03_highlighted.mp4");
    EXPECT_EQ(story(folder_ / "highlighted" / "game_clip_02_highlighted.mp4"),
              "15-23, 24 frozen 0.3 s #5, 24-29");
    EXPECT_TRUE(comesTrue([&] { return session_->exportProgress() > 0.999; }));
    EXPECT_TRUE(std::ranges::is_sorted(progress));
}

TEST_F(Exporting, StopsAtTheFirstClipThatFails) {
    const std::filesystem::path file = clip("game.mp4", {.container = "mp4", .indexFirst = true});
    open(file);
    mark(0, 0.5);
    mark(1, 2);
    mark(0, 0.5);
    std::filesystem::resize_file(file, std::filesystem::file_size(file) * 2 / 3); // a copy that was cut off
    run(session_->exportMovies());
    EXPECT_THAT(session_->errorMessage().toStdString(), StartsWith("Clip 2 failed: "));
    EXPECT_FALSE(session_->isExporting());
    EXPECT_FALSE(session_->showPostExportDialog());
    EXPECT_FALSE(session_->lastExportFile());
    EXPECT_THAT(exported(), ElementsAre("game_clip_01_highlighted.mp4"));
    EXPECT_TRUE(session_->closingLosesWork());
}

TEST_F(Exporting, ReportsAFolderThatCannotBeMade) {
    openGame();
    add(1);
    std::ofstream(folder_ / "highlighted") << "in the way";
    run(session_->exportMovies());
    EXPECT_THAT(session_->errorMessage().toStdString(), StartsWith("Couldn't create output folder: "));
    EXPECT_FALSE(session_->isExporting());
}

TEST_F(Exporting, NeverReplacesAFileThatItDidNotWriteForTheSameClip) {
    const std::filesystem::path file = openGame();
    const Bytes before = readBytes(file);
    preferences_.write(preferences::outputMode, rawValue(OutputLocationMode::sameAsSource));
    std::filesystem::create_hard_link(file, folder_ / "game_highlighted.mp4");
    std::filesystem::create_symlink(file, folder_ / "game_clip_02_highlighted.mp4");
    std::filesystem::create_directory(folder_ / "game_clip_02_highlighted 2.mp4");
    add(1);
    for (int i = 0; i < 2; ++i) { // the second time it replaces its own
        run(session_->exportMovies());
        EXPECT_EQ(session_->lastExportFile(), folder_ / "game_highlighted 2.mp4");
    }
    mark(0, 0.5);
    mark(0.5, 1);
    run(session_->exportMovies());
    EXPECT_TRUE(std::filesystem::is_regular_file(folder_ / "game_clip_01_highlighted.mp4"));
    EXPECT_EQ(session_->lastExportFile(), folder_ / "game_clip_02_highlighted 3.mp4");
    EXPECT_EQ(session_->errorMessage(), "");
    EXPECT_EQ(readBytes(file), before);

    std::ofstream(folder_ / "game_clip_01_highlighted.mp4") << "someone else's now";
    run(session_->exportMovies());
    EXPECT_EQ(readBytes(folder_ / "game_clip_01_highlighted.mp4").size(), 18U);
    EXPECT_TRUE(std::filesystem::exists(folder_ / "game_clip_01_highlighted 2.mp4"));
}

TEST_F(Exporting, KeepsMoviesOfOneNameFromTwoCamerasApart) {
    preferences_.write(preferences::outputMode, rawValue(OutputLocationMode::custom));
    preferences_.write(preferences::outputCustomFolderPath, QString::fromStdString(folder_ / "all"));
    for (const auto& [camera, marker] : {std::pair("cam1", 1), {"cam2", 2}}) {
        open(clip(std::string(camera) + "/GX010001.MP4", {.gop = 10 * marker, .container = "mp4"}));
        add(1, 0.5, marker);
        run(session_->exportMovies());
    }
    EXPECT_EQ(story(folder_ / "all" / "GX010001_highlighted.MP4"), "0-29, 30 frozen 0.5 s #1, 30-59");
    EXPECT_EQ(story(folder_ / "all" / "GX010001_highlighted 2.MP4"), "0-29, 30 frozen 0.5 s #2, 30-59");
}

TEST_F(Exporting, KeepsTheMovieOfAClipThatWasRemoved) {
    openGame();
    mark(0, 0.5);
    mark(1, 1.5);
    run(session_->exportMovies());
    session_->unmark(session_->markedClips()[0].id);
    run(session_->exportMovies());
    EXPECT_THAT(exported(), ElementsAre("game_clip_01_highlighted 2.mp4", "game_clip_01_highlighted.mp4",
                                        "game_clip_02_highlighted.mp4"));
    EXPECT_EQ(story(folder_ / "highlighted" / "game_clip_01_highlighted.mp4"), "0-14");
    EXPECT_EQ(story(folder_ / "highlighted" / "game_clip_01_highlighted 2.mp4"), "30-44");
}

TEST_F(Exporting, AsksAgainForWorkThatCameAfterIt) {
    openGame();
    add(1);
    QCoro::Task<> exporting = session_->exportMovies();
    add(0.5);
    run(std::move(exporting));
    EXPECT_TRUE(session_->closingLosesWork()) << "drawn while the export ran";
    run(session_->exportMovies());
    EXPECT_FALSE(session_->closingLosesWork());
    session_->deleteHighlight(session_->highlights()[0]);
    EXPECT_TRUE(session_->closingLosesWork());
    session_->undo();
    EXPECT_FALSE(session_->closingLosesWork());
    session_->setTrim(range(0, 1.5));
    EXPECT_TRUE(session_->closingLosesWork());
    session_->markCurrentClip();
    run(session_->exportMovies());
    EXPECT_FALSE(session_->closingLosesWork());
    session_->editMarkedClip(session_->markedClips()[0]);
    EXPECT_FALSE(session_->closingLosesWork());
    session_->dragTrimEnd(1);
    EXPECT_TRUE(session_->closingLosesWork()) << "an edit that is not saved back";
}

TEST_F(Exporting, ReadsWhetherToIncludeSoundForEachClip) {
    openGame();
    mark(0, 1);
    mark(1, 2);
    PreferenceStore settings(preferences_.file());
    QObject::connect(session_.get(), &AppState::exportProgressChanged, session_.get(), [&] {
        settings.write(preferences::outputIncludeAudio, false);
        preferences_.write(preferences::outputIncludeAudio, false);
    });
    run(session_->exportMovies());
    EXPECT_FALSE(readSound(folder_ / "highlighted" / "game_clip_01_highlighted.mp4").samples.empty());
    EXPECT_TRUE(readSound(folder_ / "highlighted" / "game_clip_02_highlighted.mp4").samples.empty());
}

TEST_F(Exporting, ContinuesWhileAnotherClipIsOpenedAndClosed) {
    openGame();
    mark(0, 0.5);
    mark(0.5, 1);
    const std::filesystem::path other = clip("other.mov");
    QCoro::Task<> exporting = session_->exportMovies();
    run(session_->load(other));
    session_->closeVideo();
    run(std::move(exporting));
    EXPECT_EQ(session_->errorMessage(), "");
    EXPECT_THAT(exported(), ElementsAre("game_clip_01_highlighted.mp4", "game_clip_02_highlighted.mp4"));
    EXPECT_EQ(story(folder_ / "highlighted" / "game_clip_02_highlighted.mp4"), "15-29");
}

TEST_F(Exporting, ContinuesWithTheAnswerOfItsDialog) {
    openGame();
    add(1);
    session_->revealLastExport();
    EXPECT_TRUE(desktop_.revealed.empty());
    run(session_->exportMovies());
    session_->revealLastExport();
    EXPECT_EQ(desktop_.revealed, folder_ / "highlighted" / "game_highlighted.mp4");
    session_->closeAndOpenFolder();
    EXPECT_TRUE(session_->triggerOpenFolder());
    EXPECT_FALSE(session_->videoFile());
    session_->closeAndOpenVideo();
    EXPECT_TRUE(session_->triggerOpen());
    session_->quit();
    EXPECT_TRUE(desktop_.terminated);
}

} // namespace
} // namespace zelvra::test
