// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/RecentlyUsed.h"

#include "tests/support/Files.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace zelvra {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(RecentlyUsed, AddsToTheDesktopsListIfThereIsOne) {
    const std::filesystem::path list =
        std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "recently-used.xbel";
    noteRecentlyUsed("/clips/no list yet.mov");
    EXPECT_FALSE(std::filesystem::exists(list));

    std::ofstream(list) << R"(<?xml version="1.0"?><xbel version="1.0"></xbel>)";
    noteRecentlyUsed("/clips/a & b 🏀.mov");
    noteRecentlyUsed("/tmp");
    const test::Bytes bytes = test::readBytes(list);
    EXPECT_THAT(std::string(bytes.begin(), bytes.end()),
                AllOf(HasSubstr("file:///clips/a%20&amp;%20b%20%F0%9F%8F%80.mov"), HasSubstr("Zelvra"),
                      HasSubstr("video/quicktime"), HasSubstr("inode/directory")));

    std::ofstream(list) << "no list at all";
    noteRecentlyUsed("/clips/game.mov");
    EXPECT_EQ(test::readBytes(list).size(), std::string("no list at all").size());
}

} // namespace
} // namespace zelvra
