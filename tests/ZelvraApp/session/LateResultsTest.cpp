// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/session/SessionFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/session/TrimEditor.h"

#include <fstream>
#include <semaphore>
#include <tuple>

namespace zelvra::test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::StartsWith;

/// What is under way when the user goes on to something else.
enum class Late { load, failingLoad, folder, newHighlight, editedHighlight, movie, failingMovie, trim };
/// What the user goes on to.
enum class Meanwhile { another, nothing, theSameAgain };

/// A result that comes late never changes what is open by then.
class LateResults : public SessionFixture, public testing::WithParamInterface<std::tuple<Late, Meanwhile>> {
protected:
    void SetUp() override {
        a_ = clip("a.mp4", {.container = "mp4"});
        b_ = clip("b.mov");
        clip("folder/c.mov");
        std::ofstream(folder_ / "broken.mov") << "no movie at all";
        open(a_);
        add(1, 0.5, 3);
        session_->playerController().playerView = &trimEditor_;
    }
    void TearDown() override { session_->playerController().playerView.clear(); }

    QCoro::Task<> begin(Late work) {
        switch (work) {
        case Late::load: return session_->load(clip("late.mov", {.frames = 900}));
        case Late::failingLoad: return session_->load(folder_ / "broken.mov");
        case Late::folder: return session_->loadFolder(folder_ / "folder");
        case Late::newHighlight: return session_->addHighlightAtCurrentTime();
        case Late::editedHighlight: return session_->editHighlight(session_->highlights()[0]);
        case Late::movie: return session_->exportMovies();
        case Late::failingMovie:
            std::filesystem::resize_file(a_, std::filesystem::file_size(a_) / 2);
            return session_->exportMovies();
        case Late::trim: break;
        }
        session_->beginTrim();
        trimEditor_.setInPoint(sessionTime(0.5));
        trimEditor_.confirm(); // the session gets the range from the event loop
        return QCoro::Task<>();
    }

    void goOn(Meanwhile what) {
        session_->closeVideo();
        if (what == Meanwhile::another) {
            run(session_->load(b_));
        } else if (what == Meanwhile::theSameAgain) {
            run(session_->load(a_));
        }
    }

    std::filesystem::path a_;
    std::filesystem::path b_;
    TrimEditor trimEditor_{session_->player()};
};

TEST_P(LateResults, LeaveWhatIsOpenByThenAsItIs) {
    const auto [late, meanwhile] = GetParam();
    QCoro::Task<> underway = begin(late);
    goOn(meanwhile);
    if (meanwhile != Meanwhile::nothing) {
        add(0.5, 0.5, 4);
    }
    if (late != Late::trim) {
        run(std::move(underway));
    }
    wait(0.05);

    const auto expected = meanwhile == Meanwhile::nothing   ? std::optional<std::filesystem::path>()
                          : meanwhile == Meanwhile::another ? std::optional(b_)
                                                            : std::optional(a_);
    EXPECT_EQ(session_->videoFile(), expected);
    EXPECT_EQ(session_->queueLabel(), "");
    EXPECT_FALSE(session_->draft());
    EXPECT_FALSE(session_->trimRange());
    EXPECT_FALSE(session_->showPostExportDialog());
    EXPECT_FALSE(session_->isOpening());
    EXPECT_FALSE(session_->isGrabbingFrame());
    EXPECT_EQ(session_->closingLosesWork(), expected.has_value());
    if (expected) {
        EXPECT_THAT(moments(), ElementsAre(0.5));
        EXPECT_EQ(session_->player().currentItem()->path, expected);
    }
    const std::string line = session_->errorMessage().toStdString();
    if (late == Late::failingMovie) {
        EXPECT_THAT(line, AnyOf("", StartsWith("“a.mp4”: Export failed: "))) << "empty if it came first";
    } else {
        EXPECT_EQ(line, "");
    }
    EXPECT_EQ(session_->lastExportFile().has_value(), late == Late::movie) << "whose banner names the file";
}

std::vector<std::tuple<Late, Meanwhile>> allCases() {
    std::vector<std::tuple<Late, Meanwhile>> cases;
    for (const Late late : {Late::load, Late::failingLoad, Late::folder, Late::newHighlight,
                            Late::editedHighlight, Late::movie, Late::failingMovie, Late::trim}) {
        cases.emplace_back(late, Meanwhile::another);
        cases.emplace_back(late, Meanwhile::nothing);
        if (late != Late::failingMovie) { // which is damaged then
            cases.emplace_back(late, Meanwhile::theSameAgain);
        }
    }
    return cases;
}
INSTANTIATE_TEST_SUITE_P(All, LateResults, testing::ValuesIn(allCases()));

class LateRequests : public SessionFixture {};

TEST_F(LateRequests, GiveWayToTheClipAskedForLast) {
    const std::filesystem::path slow =
        clip("slow.mp4", {.width = 64, .height = 36, .rate = 1, .frames = 4 * 3600, .container = "mp4"});
    const std::filesystem::path quick = clip("quick.mov");
    for (const auto& [first, second] : {std::pair(slow, quick), {quick, slow}}) {
        QCoro::Task<> earlier = session_->load(first);
        QCoro::Task<> later = session_->load(second);
        run(std::move(later));
        run(std::move(earlier));
        EXPECT_EQ(session_->videoFile(), second);
        EXPECT_EQ(session_->recents()[0].path.toStdString(), second);
    }
    EXPECT_EQ(session_->recents().size(), 2U) << "what was overtaken was never open";
}

TEST_F(LateRequests, GoWhereNextWasPressedLast) {
    for (const char* name : {"clips/1.mov", "clips/2.mov", "clips/3.mov", "clips/4.mov"}) {
        clip(name);
    }
    run(session_->loadFolder(folder_ / "clips"));
    QCoro::Task<> second = session_->nextClip();
    QCoro::Task<> third = session_->nextClip();
    QCoro::Task<> fourth = session_->nextClip();
    QCoro::Task<> back = session_->previousClip();
    EXPECT_EQ(session_->queueLabel(), "3 of 4");
    for (QCoro::Task<>* pressed : {&second, &third, &fourth, &back}) {
        run(std::move(*pressed));
    }
    EXPECT_EQ(session_->videoFile(), folder_ / "clips" / "3.mov");
}

TEST_F(LateRequests, EndWithTheSession) {
    open(clip("one.mp4", {.container = "mp4"}));
    add(1);
    QCoro::Task<> exporting = session_->exportMovies();
    QCoro::Task<> loading = session_->load(folder_ / "one.mp4");
    QCoro::Task<> listing = session_->loadFolder(folder_.path());
    QCoro::Task<> adding = session_->addHighlightAtCurrentTime();
    session_.reset();
    for (QCoro::Task<>* task : {&exporting, &loading, &listing, &adding}) {
        run(std::move(*task));
    }
    finishWorkers(std::chrono::seconds(20));
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
        if (entry.is_regular_file()) {
            left.push_back(entry.path().extension());
        }
    }
    EXPECT_THAT(left, testing::UnorderedElementsAre(".mp4", ".json", ".json")) << "preferences and journal";
}

TEST(Workers, AreNotWaitedForWithoutLimit) {
    using std::chrono_literals::operator""ms;
    std::binary_semaphore share(0); // does not respond
    const QFuture<void> hangs = onWorkerThread([&share] { share.acquire(); });
    EXPECT_FALSE(finishWorkers(20ms));
    share.release();
    EXPECT_TRUE(finishWorkers(20'000ms));
}

} // namespace
} // namespace zelvra::test
