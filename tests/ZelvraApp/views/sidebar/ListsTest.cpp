// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

#include <gmock/gmock.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;

class Lists : public ViewsFixture {
protected:
    std::vector<std::string> texts(const QString& objectName) {
        std::vector<std::string> result;
        for (const QQuickItem* item : items(objectName)) {
            result.push_back(text(*item));
        }
        return result;
    }
    void clickRow(const QString& objectName, std::size_t row) {
        EXPECT_TRUE(comesTrue([&] {
            const auto rows = items(objectName);
            return rows.size() > row && clickIfItStays(*rows.at(row));
        }));
    }
};

TEST_F(Lists, ShowHighlightsInOrderOfTime) {
    openRecording();
    EXPECT_TRUE(isShown("noHighlights"));
    EXPECT_EQ(text("highlightCount"), "0");
    EXPECT_FALSE(enabled("undo"));
    highlight(300, 2);
    highlight(60, 0.5);
    EXPECT_FALSE(isShown("noHighlights"));
    EXPECT_EQ(text("highlightCount"), "2");
    EXPECT_TRUE(comesTrue([&] { return items("highlightRow").size() == 2; }));
    EXPECT_THAT(texts("highlightTime"), ElementsAre("01:00.00", "05:00.00"));
    EXPECT_THAT(texts("highlightFreeze"), ElementsAre("0.5s freeze", "2.0s freeze"));
    EXPECT_TRUE(showsTip(*items("highlightRow").at(0), "Click to edit, or use the trash to delete",
                         QPointF(100, 10)));
    EXPECT_TRUE(showsTip(*items("deleteHighlight").at(0), "Delete highlight"));
}

TEST_F(Lists, DeleteAndUndoAndEditHighlights) {
    openRecording();
    highlight(60);
    EXPECT_TRUE(appears("highlightRow"));
    clickRow("deleteHighlight", 0);
    EXPECT_TRUE(appears("noHighlights"));
    EXPECT_FALSE(state().draft() || state().isGrabbingFrame()) << "the trash opens no editor";
    click("undo");
    EXPECT_TRUE(appears("highlightRow"));
    clickRow("highlightRow", 0);
    EXPECT_TRUE(comesTrue([&] { return state().draft().has_value(); }));
    EXPECT_TRUE(state().draft()->isEditing);
}

TEST_F(Lists, ShowMarkedClipsByTheirPlace) {
    openRecording();
    EXPECT_FALSE(isShown("markedClips"));
    trim(60, 90);
    highlight(70);
    state().markCurrentClip();
    mark(200, 230);
    mark(300, 330.5);
    EXPECT_TRUE(comesTrue([&] { return items("markedClipRow").size() == 3; }));
    EXPECT_EQ(text("markedClipCount"), "3");
    EXPECT_THAT(texts("clipNumber"), ElementsAre("01", "02", "03"));
    EXPECT_THAT(texts("clipRange"),
                ElementsAre("01:00.00 – 01:30.00", "03:20.00 – 03:50.00", "05:00.00 – 05:30.50"));
    EXPECT_THAT(texts("clipHighlights"), ElementsAre("1 highlight", "0 highlights", "0 highlights"));
    EXPECT_TRUE(showsTip(*items("removeClip").at(1), "Remove from list"));
    clickRow("removeClip", 1);
    EXPECT_TRUE(comesTrue([&] { return items("markedClipRow").size() == 2; }));
    EXPECT_THAT(texts("clipNumber"), ElementsAre("01", "02"));
    EXPECT_FALSE(state().editingClipID());
}

TEST_F(Lists, LoadAMarkedClipForEditing) {
    openRecording();
    mark(60, 90);
    mark(200, 230);
    EXPECT_TRUE(comesTrue([&] { return items("markedClipRow").size() == 2; }));
    clickRow("markedClipRow", 1);
    EXPECT_EQ(state().editingClipID(), state().markedClips().at(1).id);
    EXPECT_EQ(items("clipPencil").size(), 1U);
    EXPECT_TRUE(showsTip(*items("markedClipRow").at(1), "Currently editing — use Save & Return to commit"));
    trim(205, 230);
    clickRow("markedClipRow", 1);
    EXPECT_EQ(trimStart(), 205) << "a click on the row that is edited does nothing";
    clickRow("markedClipRow", 0);
    EXPECT_EQ(trimStart(), 60);
    EXPECT_EQ(state().markedClips().at(1).range.start.seconds(), 200) << "the first edit was left unsaved";
}

TEST_F(Lists, AreUsedByKeys) {
    openRecording();
    for (const double at : {60, 120, 180}) {
        highlight(at);
    }
    item("highlightList").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    EXPECT_TRUE(comesTrue([&] { return items("highlightRow").size() == 2; }));
    EXPECT_THAT(texts("highlightTime"), ElementsAre("01:00.00", "03:00.00"));
    key(Qt::Key_Up);
    key(Qt::Key_Return);
    EXPECT_TRUE(comesTrue([&] { return state().draft().has_value(); }));
    EXPECT_EQ(state().draft()->timestamp.seconds(), 60);
}

} // namespace
} // namespace zelvra::test
