// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/journal/Journal.h"
#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/ZelvraApp/annotations/Moments.h"
#include "tests/support/Files.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

MovieIdentity movie(std::uint64_t number) {
    return {.size = number, .digest = {1, 2, 3}};
}

/// Work of that many highlights.
ClipWork workWith(int highlights) {
    ClipWork work;
    for (int i = 0; i < highlights; ++i) {
        work.annotations.highlights.push_back(highlightAt(i));
    }
    return work;
}

class JournalOnDisk : public testing::Test {
protected:
    std::filesystem::path folder() const { return state_ / "journal"; }
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& item : std::filesystem::directory_iterator(folder())) {
            names.push_back(item.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    std::filesystem::path fileOf(std::uint64_t number) const {
        return folder() / (movie(number).text() + ".json");
    }

    TemporaryFolder state_;
    Journal journal_{state_.path()};
};

TEST_F(JournalOnDisk, KeepsAllWorkOnAMovieUnderItsIdentity) {
    EXPECT_FALSE(journal_.read(movie(1))) << "there is no folder yet";
    EXPECT_THAT(journal_.entries(), IsEmpty());
    ClipWork work = workWith(2);
    work.annotations.markedClips = {clipOf(1, 3), clipOf(5, 6)};
    work.annotations.markedClips[0].highlights = {highlightAt(2)};
    work.annotations.markedClips[1].highlights = {highlightAt(5)};
    work.annotations.editMarkedClip(work.annotations.markedClips[1].id);
    work.exported.note(work.annotations);
    work.written[work.annotations.markedClips[0].id] = {"/out/\xFF.mp4", 7};
    journal_.write(movie(1), "/games/\xFF.mp4", work);

    const std::optional<Journal::Entry> entry = journal_.read(movie(1));
    ASSERT_TRUE(entry);
    EXPECT_TRUE(identical(entry->work, work));
    EXPECT_EQ(entry->movie, "/games/\xFF.mp4");
    EXPECT_LT(std::chrono::system_clock::now() - entry->lastChange, std::chrono::minutes(1));
    EXPECT_FALSE(journal_.read(movie(2)));

    const std::vector<Journal::Summary> rows = journal_.entries();
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].identity, movie(1));
    EXPECT_EQ(rows[0].movie, "/games/\xFF.mp4");
    EXPECT_EQ(rows[0].highlights, 4U) << "each one once, also those of the clip that is edited";
    EXPECT_EQ(rows[0].markedClips, 2U);
    EXPECT_TRUE(rows[0].hasUnexportedWork);
    const auto permissions = std::filesystem::status(folder()).permissions();
    EXPECT_EQ(permissions, std::filesystem::perms::owner_all);
}

TEST_F(JournalOnDisk, ForgetsWorkThatIsEmptyButNotWhatWasWritten) {
    journal_.write(movie(1), "/a.mp4", workWith(1));
    ClipWork empty;
    empty.defaults.durationSec = 9;
    journal_.write(movie(1), "/a.mp4", empty);
    EXPECT_THAT(names(), IsEmpty());
    empty.written[Uuid{}] = {"/out.mp4", 5};
    journal_.write(movie(1), "/a.mp4", empty);
    EXPECT_TRUE(journal_.read(movie(1)));
    journal_.write(movie(2), "/b.mp4", workWith(1));
    journal_.forget(movie(1));
    journal_.forget(movie(1));
    EXPECT_FALSE(journal_.read(movie(1)));
    EXPECT_TRUE(journal_.read(movie(2)));
    std::ofstream(folder() / "notes.txt") << "not the journal's";
    journal_.forgetAll();
    EXPECT_THAT(names(), ElementsAre("notes.txt"));
}

TEST_F(JournalOnDisk, SetsAsideWhatItCannotUnderstand) {
    const std::string newer = R"({"version": 2, "stickers": []})";
    for (const std::string& content : {std::string("{\"highl"), std::string(), newer, std::string("{}")}) {
        journal_.write(movie(1), "/a.mp4", workWith(1));
        journal_.write(movie(2), "/b.mp4", workWith(1));
        std::ofstream(fileOf(1)) << content;
        EXPECT_FALSE(journal_.read(movie(1))) << content;
        EXPECT_THAT(journal_.entries(), SizeIs(1));
        EXPECT_THAT(names(), ElementsAre(movie(1).text() + ".json.damaged", movie(2).text() + ".json"));
        EXPECT_EQ(readBytes(folder() / (movie(1).text() + ".json.damaged")),
                  Bytes(content.begin(), content.end()));
    }
    std::filesystem::rename(fileOf(2), fileOf(3));
    EXPECT_FALSE(journal_.read(movie(3))) << "of another movie than its name says";

    for (std::uint64_t i = 10; i < 50; ++i) {
        std::ofstream(fileOf(i)) << "damaged";
    }
    EXPECT_THAT(journal_.entries(), IsEmpty());
    EXPECT_THAT(names(), SizeIs(Journal::mostDamaged));
    journal_.forgetAll();
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(JournalOnDisk, KeepsTheMoviesThatWereChangedLast) {
    journal_.write(movie(1), "/a.mp4", workWith(1));
    const auto now = std::filesystem::file_time_type::clock::now();
    for (std::uint64_t i = 2; i <= Journal::mostMovies; ++i) {
        std::filesystem::copy_file(fileOf(1), fileOf(i));
        std::filesystem::last_write_time(fileOf(i), now + std::chrono::seconds(i));
    }
    std::filesystem::last_write_time(fileOf(77), now - std::chrono::hours(1));
    journal_.write(movie(1), "/a.mp4", workWith(2));
    EXPECT_THAT(names(), SizeIs(Journal::mostMovies));
    journal_.write(movie(1000), "/new.mp4", workWith(1));
    EXPECT_THAT(names(), SizeIs(Journal::mostMovies));
    EXPECT_FALSE(std::filesystem::exists(fileOf(77)));
    EXPECT_TRUE(journal_.read(movie(1000))) << "also if all others were written by a clock that is ahead";
}

TEST_F(JournalOnDisk, RemovesWhatAKilledWriterLeft) {
    journal_.write(movie(1), "/a.mp4", workWith(1));
    std::ofstream(folder() / ".zv-abcdefgh.part") << "half";
    EXPECT_THAT(journal_.entries(), SizeIs(1));
    EXPECT_THAT(names(), SizeIs(1));
}

TEST_F(JournalOnDisk, ReportsAFullDiskAndKeepsTheOldDocument) {
    std::filesystem::create_directory(folder());
    if (mount("tmpfs", folder().c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "only root can make a tiny disk";
    }
    journal_.write(movie(1), "/a.mp4", workWith(1));
    std::string line;
    try {
        journal_.write(movie(1), "/a.mp4", workWith(1000));
    } catch (const MediaError& error) {
        line = error.what();
    }
    EXPECT_EQ(line, "cannot write '" + fileOf(1).string() + "': No space left on device");
    EXPECT_EQ(journal_.read(movie(1))->work.annotations.highlights.size(), 1U);
    EXPECT_THAT(names(), SizeIs(1));
    umount(folder().c_str());
}

TEST_F(JournalOnDisk, ReportsAFolderThatCannotBeMade) {
    std::ofstream(state_ / "file") << "";
    EXPECT_THROW(Journal(state_ / "file").write(movie(1), "/a.mp4", workWith(1)), MediaError);
    EXPECT_FALSE(Journal(state_ / "file").read(movie(1)));
}

/// A process that writes documents of 1 to 40 highlights until it is killed.
pid_t startWriter(const Journal& journal) {
    const pid_t child = fork();
    if (child == 0) {
        for (int i = 0;; ++i) {
            journal.write(movie(1), "/a.mp4", workWith(1 + i % 40));
        }
    }
    return child;
}

TEST_F(JournalOnDisk, HasACompleteDocumentWheneverItsWriterIsKilled) {
    journal_.write(movie(1), "/a.mp4", workWith(1));
    std::minstd_rand dice(20240607);
    for (int round = 0; round < 60; ++round) {
        const pid_t writer = startWriter(journal_);
        std::this_thread::sleep_for(std::chrono::microseconds(dice() % 30'000));
        ASSERT_TRUE(journal_.read(movie(1))) << "while it is written";
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        const auto entry = journal_.read(movie(1));
        ASSERT_TRUE(entry) << round;
        EXPECT_GT(entry->work.annotations.highlights.size(), 0U);
    }
    EXPECT_THAT(journal_.entries(), SizeIs(1));
    EXPECT_THAT(names(), SizeIs(1)) << "no half document, nothing set aside";
}

TEST_F(JournalOnDisk, IsWrittenBySeveralProcessesAtOnce) {
    const pid_t writers[]{startWriter(journal_), startWriter(journal_), startWriter(journal_)};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    int read = 0;
    while (read < 200 && std::chrono::steady_clock::now() < end) {
        read += journal_.read(movie(1)) ? 1 : 0;
        journal_.entries();
    }
    for (const pid_t writer : writers) {
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
    }
    EXPECT_EQ(read, 200);
    EXPECT_THAT(journal_.entries(), SizeIs(1));
    EXPECT_THAT(names(), SizeIs(1));
}

TEST(StateFolder, IsTheOneOfTheEnvironmentOrOfTheDesktop) {
    const auto with = [](const char* zelvra, const char* states, const char* home) {
        setenv("ZELVRA_STATE", zelvra, 1);
        setenv("XDG_STATE_HOME", states, 1);
        setenv("HOME", home, 1);
        return stateFolder();
    };
    EXPECT_EQ(with("/here", "/states", "/home/me"), "/here");
    EXPECT_EQ(with("here", "/states", "/home/me"), std::filesystem::current_path() / "here");
    EXPECT_EQ(with("", "/states", "/home/me"), "/states/zelvra");
    EXPECT_EQ(with("", "relative", "/home/me"), "/home/me/.local/state/zelvra");
    EXPECT_EQ(with("", "", "/home/me"), "/home/me/.local/state/zelvra");
    EXPECT_TRUE(with("", "", "").is_absolute());
    unsetenv("ZELVRA_STATE");
    unsetenv("XDG_STATE_HOME");
}

} // namespace
} // namespace zelvra::test
