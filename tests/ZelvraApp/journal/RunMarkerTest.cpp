// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/journal/RunMarker.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/Files.h"

#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RunMarkers : public testing::Test {
protected:
    std::vector<std::filesystem::path> leftBehind() const { return RunMarker::leftBehind(state_.path()); }
    bool hasMarkers() const { return !std::filesystem::is_empty(state_ / "running"); }

    /// A program that opens these clips one after another, and is killed.
    void killRunWith(const std::vector<std::filesystem::path>& clips) const {
        const pid_t child = fork();
        if (child == 0) {
            RunMarker marker(state_.path());
            for (const std::filesystem::path& clip : clips) {
                marker.setClip(clip);
            }
            raise(SIGKILL);
        }
        waitpid(child, nullptr, 0);
    }

    TemporaryFolder state_;
};

TEST_F(RunMarkers, NameTheClipOfAKilledRunOnce) {
    EXPECT_THAT(leftBehind(), IsEmpty()) << "the first run ever";
    killRunWith({"/games/a very long name.mp4", "/b\xFF\n.mp4"});
    killRunWith({"/c.mp4", ""});
    killRunWith({});
    EXPECT_THAT(leftBehind(), ElementsAre("/b\xFF\n.mp4"));
    EXPECT_THAT(leftBehind(), IsEmpty());
    EXPECT_FALSE(hasMarkers());
}

TEST_F(RunMarkers, NameTheLatestClipFirstAndEachOnce) {
    for (const char* clip : {"/a.mp4", "/b.mp4", "/a.mp4"}) {
        killRunWith({clip});
        usleep(20'000);
    }
    EXPECT_THAT(leftBehind(), ElementsAre("/a.mp4", "/b.mp4"));
}

TEST_F(RunMarkers, OfLivingRunsAreNotTaken) {
    {
        RunMarker mine(state_.path());
        mine.setClip("/mine.mp4");
        killRunWith({"/killed.mp4"});
        EXPECT_THAT(leftBehind(), ElementsAre("/killed.mp4"));
        EXPECT_TRUE(hasMarkers());
    }
    EXPECT_FALSE(hasMarkers()) << "a normal end";
    EXPECT_THAT(leftBehind(), IsEmpty());
}

TEST_F(RunMarkers, AreTakenByOneOfManyStartingPrograms) {
    for (int round = 0; round < 20; ++round) {
        killRunWith({"/a.mp4"});
        std::vector<pid_t> children;
        for (int i = 0; i < 4; ++i) {
            children.push_back(fork());
            if (children.back() == 0) {
                const RunMarker mine(state_.path());
                _exit(static_cast<int>(leftBehind().size()));
            }
        }
        int taken = 0;
        for (const pid_t child : children) {
            int status = 0;
            waitpid(child, &status, 0);
            taken += WEXITSTATUS(status);
        }
        EXPECT_EQ(taken, 1);
    }
}

TEST_F(RunMarkers, IgnoreFilesOfOthersAndReportAFolderThatCannotBeWritten) {
    std::filesystem::create_directories(state_ / "running/folder.run");
    std::ofstream(state_ / "running/notes.txt") << "x";
    std::ofstream(state_ / "running/empty.run") << "";
    std::ofstream(state_ / "running/unended.run") << "/half";
    EXPECT_THAT(leftBehind(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(state_ / "running/notes.txt"));
    EXPECT_THROW(RunMarker(state_ / "running/notes.txt"), MediaError);
}

} // namespace
} // namespace zelvra::test
