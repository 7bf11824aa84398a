// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/WindowState.h"
#include "tests/ZelvraApp/shell/ShellFixture.h"

namespace zelvra::test {
namespace {

using MainWindow = ShellFixture;

TEST_F(MainWindow, IsRestoredInItsSize) {
    EXPECT_GE(window().minimumWidth(), 960);
    EXPECT_GE(window().minimumHeight(), 620);
    window().resize(1000, 700);
    EXPECT_TRUE(comesTrue([&] { return window().contentItem()->width() == 1000; }));
    application_.reset();
    application_ = std::make_unique<Application>(options());
    EXPECT_EQ(window().size(), QSize(1000, 700));
}

TEST(WindowStateFile, IsIgnoredIfItMakesNoSense) {
    const TemporaryFolder folder;
    const auto widthFrom = [&](const std::string& content) {
        writeBytes(folder / "window.json", Bytes(content.begin(), content.end()));
        return WindowState(folder / "window.json").property("width").toInt();
    };
    EXPECT_EQ(widthFrom(R"({"width": 1100})"), 1100);
    EXPECT_EQ(widthFrom(R"({"width": "wide"})"), 1280);
    EXPECT_EQ(widthFrom(R"({"width": 1e300})"), 16384);
    EXPECT_EQ(widthFrom("[not even"), 1280);
}

} // namespace
} // namespace zelvra::test
