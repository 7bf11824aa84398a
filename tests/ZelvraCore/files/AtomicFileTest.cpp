// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/files/AtomicFile.h"

#include "ZelvraCore/records/MediaError.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace zelvra::files {
namespace {

using test::Bytes;
using Names = std::vector<std::string>;

TEST(AtomicFile, AppearsUnderItsNameOnlyWhenCommitted) {
    const test::TemporaryFolder folder;
    test::writeBytes(folder / "out.mp4", {1});
    {
        AtomicFile file(folder / "out.mp4");
        file.write(2, Bytes{4});
        file.write(0, Bytes{2, 3});
        EXPECT_EQ(test::readBytes(folder / "out.mp4"), Bytes{1});
        file.commit();
    }
    EXPECT_EQ(test::readBytes(folder / "out.mp4"), (Bytes{2, 3, 4}));
    EXPECT_EQ(folder.names(), Names{"out.mp4"});
}

TEST(AtomicFile, LeavesNothingWhenNotCommitted) {
    const test::TemporaryFolder folder;
    {
        const AtomicFile file(folder / "out.mp4");
    }
    EXPECT_EQ(folder.names(), Names{});
}

TEST(AtomicFile, TakesTheLongestNameThereIs) {
    const test::TemporaryFolder folder;
    const std::string name = std::string(251, 'n') + ".mp4";
    AtomicFile(folder / name).commit();
    EXPECT_EQ(folder.names(), Names{name});
}

TEST(AtomicFile, SaysWhichFileCannotBeWrittenAndWhy) {
    const test::TemporaryFolder folder;
    const auto destination = folder / "missing" / "out.mp4";
    try {
        const AtomicFile file(destination);
        FAIL();
    } catch (const MediaError& error) {
        EXPECT_EQ(error.cause(), MediaError::Cause::unwritable);
        EXPECT_EQ(error.what(), "cannot write '" + destination.string() + "': No such file or directory");
    }
    std::filesystem::create_directory(folder / "folder");
    EXPECT_THROW(AtomicFile(folder / "folder").commit(), MediaError);
    EXPECT_EQ(folder.names(), Names{"folder"});
}

TEST(AtomicFile, IsSweptAfterItsWriterWasKilledAndNotBefore) {
    const test::TemporaryFolder folder;
    const AtomicFile alive(folder / "alive.mp4");
    const pid_t child = ::fork();
    if (child == 0) {
        const AtomicFile file(folder / "killed.mp4");
        ::raise(SIGKILL);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    test::writeBytes(folder / ".zv-.part", {});
    ASSERT_EQ(folder.names().size(), 3u);
    sweepStrays(folder.path());
    EXPECT_EQ(folder.names(), (Names{".zv-.part", alive.temporaryPath().filename()}));
    sweepStrays(folder / "missing");
}

} // namespace
} // namespace zelvra::files
