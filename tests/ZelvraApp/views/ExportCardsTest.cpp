// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/Texts.h"
#include "tests/ZelvraApp/views/ViewsFixture.h"

namespace zelvra::test {
namespace {

using ExportCards = ViewsFixture;

TEST_F(ExportCards, ShowTheProgressAndTheWrittenFile) {
    open(clip("one.mov", {.frames = 300}));
    mark(0.5, 3);
    mark(4, 6);
    bool percentageWasRight = true;
    QObject::connect(&state(), &AppState::exportProgressChanged, &window(), [&] {
        if (const QQuickItem* percentage = find("exportPercentage")) {
            percentageWasRight &=
                text(*percentage) == Texts::percentage(state().exportProgress()).toStdString();
        }
    });
    click("exportMovies");
    EXPECT_TRUE(appears("exportProgress"));
    EXPECT_FALSE(isShown("exportBanner"));
    EXPECT_TRUE(comesTrue([&] { return state().showPostExportDialog(); }));
    EXPECT_TRUE(percentageWasRight);
    EXPECT_TRUE(disappears("exportProgress"));
    answer("Stay with Current Clip");
    EXPECT_TRUE(disappears("questionTitle"));
    EXPECT_EQ(text("exportedName"), "one_clip_02_highlighted.mov");
    click("reveal");
    EXPECT_EQ(desktop_.revealed.filename(), "one_clip_02_highlighted.mov");
    click("dismissBanner");
    EXPECT_TRUE(disappears("exportBanner"));
    EXPECT_TRUE(std::filesystem::exists(desktop_.revealed));
    click("closeClip");
    EXPECT_TRUE(comesTrue([&] { return !state().videoFile(); })) << "all of it is exported: no question";
}

TEST_F(ExportCards, AreReplacedByAnErrorIfAnExportFails) {
    open(clip("one.mov"));
    highlight(0.5);
    state().preferences().write(preferences::outputMode, QStringLiteral("custom"));
    state().preferences().write(preferences::outputCustomFolderPath, QStringLiteral("/proc/none"));
    click("exportMovies");
    EXPECT_TRUE(appears("questionTitle"));
    EXPECT_EQ(text("questionTitle"), "Something went wrong");
    EXPECT_FALSE(isShown("exportBanner"));
}

} // namespace
} // namespace zelvra::test
