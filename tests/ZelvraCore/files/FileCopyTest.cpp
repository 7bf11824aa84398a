// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/files/FileCopy.h"

#include "ZelvraCore/records/MediaError.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <numeric>

namespace zelvra::files {
namespace {

/// More than one step of the copy, and no multiple of any buffer.
test::Bytes manyBytes() {
    test::Bytes bytes((std::size_t{40} << 20) + 12'345);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

TEST(FileCopy, WritesTheSameBytesFromAFileAndFromMemory) {
    const test::TemporaryFolder folder;
    const test::Bytes bytes = manyBytes();
    test::writeBytes(folder / "source.mov", bytes);
    copyFile(files::FileByteSource(folder / "source.mov"), folder / "file.mov");
    copyFile(files::MemoryByteSource(bytes), folder / "memory.mov");
    EXPECT_TRUE(test::readBytes(folder / "file.mov") == bytes);
    EXPECT_TRUE(test::readBytes(folder / "memory.mov") == bytes);
}

TEST(FileCopy, StopsSoonAndLeavesTheOldFile) {
    const test::TemporaryFolder folder;
    test::writeBytes(folder / "out.mov", {7});
    std::stop_source stop;
    const auto stopAtFirstReport = [&stop](double) { stop.request_stop(); };
    EXPECT_THROW(copyFile(files::MemoryByteSource(manyBytes()), folder / "out.mov", stopAtFirstReport,
                          stop.get_token()),
                 MediaError);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"out.mov"});
    EXPECT_EQ(test::readBytes(folder / "out.mov"), test::Bytes{7});
}

} // namespace
} // namespace zelvra::files
