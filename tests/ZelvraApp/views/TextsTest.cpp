// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/Texts.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

TEST(Texts, SayWhatClosingLoses) {
    EXPECT_EQ(Texts::closeMessage(0, 0), "");
    EXPECT_EQ(Texts::closeMessage(2, 0),
              "2 highlights haven't been exported yet. Closing will discard them.");
    EXPECT_EQ(Texts::closeMessage(1, 1),
              "1 marked clip and 1 highlight haven't been exported yet. Closing will discard them.");
    EXPECT_EQ(Texts::closeMessage(0, 3),
              "3 marked clips haven't been exported yet. Closing will discard them.");
}

TEST(Texts, SayWhatIsRememberedOfAClip) {
    EXPECT_EQ(Texts::leftWork(5, 3), "You left 5 highlights and 3 marked clips here.");
    EXPECT_EQ(Texts::leftWork(1, 0), "You left 1 highlight here.");
    EXPECT_EQ(Texts::leftWork(0, 1), "You left 1 marked clip here.");
    EXPECT_EQ(Texts::leftWork(0, 0), "You left a trimmed range here.");
    EXPECT_EQ(Texts::workCount(5, 1), "5 highlights, 1 clip");
    EXPECT_EQ(Texts::workCount(0, 3), "3 clips");
    EXPECT_EQ(Texts::workCount(0, 0), "trimmed");
    EXPECT_EQ(Texts::workDetails(1, 0, true, true),
              "1 highlight\nAll of it is exported\nWas open when Zelvra did not end properly");
}

TEST(Texts, NameTheExportedFile) {
    EXPECT_EQ(Texts::postExportMessage({}), "");
    EXPECT_EQ(Texts::postExportMessage(QUrl::fromLocalFile("/a b/50% “öl”%20_highlighted.mp4")),
              "Saved as 50% “öl”%20_highlighted.mp4.");
    EXPECT_EQ(Texts::nextClipAnswer(2, 12), "Next Clip (4 of 12)");
}

TEST(Texts, SayWhatTheMarkingKeysDo) {
    EXPECT_EQ(Texts::inPointTip(false, 30.9),
              "Start a 30-second clip here (I) — press O to set the exact end");
    EXPECT_EQ(Texts::inPointTip(true, 45), "Nudge the clip's start to the current time (I)");
    EXPECT_EQ(Texts::outPointTip(true, true), "Nudge the clip's end to the current time (O)");
    EXPECT_EQ(Texts::outPointTip(false, true), "Set the new clip's end to the current time (O)");
    EXPECT_EQ(Texts::outPointTip(false, false), "Press I first to start a clip");
}

TEST(Texts, CountAndRoundDown) {
    EXPECT_EQ(Texts::exportLabel(0), "Export");
    EXPECT_EQ(Texts::exportLabel(3), "Export (3)");
    EXPECT_EQ(Texts::highlightCount(0), "0 highlights");
    EXPECT_EQ(Texts::highlightCount(1), "1 highlight");
    EXPECT_EQ(Texts::clipNumber(1), "01");
    EXPECT_EQ(Texts::clipNumber(100), "100");
    EXPECT_EQ(Texts::freezeLength(0.5), "0.5s freeze");
    EXPECT_EQ(Texts::freezeLength(2), "2.0s freeze");
    EXPECT_EQ(Texts::percentage(0.377), "37%");
    EXPECT_EQ(Texts::percentage(1), "100%");
}

TEST(Texts, NameTheFolderThatHoldsAnItem) {
    EXPECT_EQ(Texts::folderName("/home/coach/Match day/half.mp4"), "Match day");
    EXPECT_EQ(Texts::folderName("/home/coach/Match day/"), "coach");
}

} // namespace
} // namespace zelvra
