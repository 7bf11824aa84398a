// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/bridge/SessionModels.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <random>

namespace zelvra {
namespace {

using testing::ElementsAre;

/// Records each change of rows as text.
class RowChanges {
public:
    explicit RowChanges(QAbstractItemModel& model) {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted,
                         [this](const QModelIndex&, int row) { note("insert", row); });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved,
                         [this](const QModelIndex&, int row) { note("remove", row); });
        QObject::connect(&model, &QAbstractItemModel::rowsMoved,
                         [this](const QModelIndex&, int row) { note("move", row); });
        QObject::connect(&model, &QAbstractItemModel::dataChanged,
                         [this](const QModelIndex& first) { note("change", first.row()); });
        QObject::connect(&model, &QAbstractItemModel::modelReset, [this] { note("reset", 0); });
    }
    std::vector<std::string> take() { return std::exchange(changes_, {}); }

private:
    void note(const std::string& what, int row) { changes_.push_back(what + " " + std::to_string(row)); }

    std::vector<std::string> changes_;
};

TEST(KeyedListModel, ChangesOnlyTheRowsThatChange) {
    ClipModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    RowChanges changes(model);
    model.update({{"/a", false}, {"/b", false}, {"/c", false}});
    EXPECT_THAT(changes.take(), ElementsAre("insert 0", "insert 1", "insert 2"));
    model.update({{"/a", false}, {"/b", true}, {"/c", false}});
    EXPECT_THAT(changes.take(), ElementsAre("change 1"));
    model.update({{"/c", false}, {"/a", false}, {"/b", true}});
    EXPECT_THAT(changes.take(), ElementsAre("move 2"));
    model.update({{"/c", false}, {"/d", false}, {"/b", true}});
    EXPECT_THAT(changes.take(), ElementsAre("remove 1", "insert 1"));
    model.update({{"/c", false}, {"/d", false}, {"/b", true}});
    EXPECT_THAT(changes.take(), ElementsAre());
}

TEST(KeyedListModel, EndsWithTheGivenListAfterAnyList) {
    ClipModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    RowChanges changes(model);
    std::mt19937 dice{7};
    for (int round = 0; round < 500; ++round) {
        std::vector<ClipRow> items(dice() % 8);
        for (ClipRow& item : items) {
            item = {QString::number(dice() % 6), dice() % 2 == 0}; // keys come twice too
        }
        model.update(items);
        ASSERT_EQ(model.items(), items);
    }
    EXPECT_THAT(changes.take(), testing::Not(testing::Contains("reset 0")));
}

TEST(KeyedListModel, HasTheValuesThatViewsShow) {
    MarkedClipModel clips;
    clips.update({{Uuid::random(), CMTimeRange::fromStartToEnd({1, 2}, {5, 2}), {Highlight{}}}});
    EXPECT_EQ(clips.data(clips.index(0), MarkedClipModel::startRole), 0.5);
    EXPECT_EQ(clips.data(clips.index(0), MarkedClipModel::endRole), 2.5);
    EXPECT_EQ(clips.data(clips.index(0), MarkedClipModel::highlightCountRole), 1);
    HighlightModel highlights;
    highlights.update(
        {{Uuid{},
          {3, 2},
          {1, 1},
          {.id = {}, .kind = HighlightShapeKind::arrow, .p1 = {}, .p2 = {}, .strokeColor = {1, 0, 0, 1}}}});
    EXPECT_EQ(highlights.data(highlights.index(0), HighlightModel::momentRole), 1.5);
    EXPECT_EQ(highlights.data(highlights.index(0), HighlightModel::kindRole), "arrow");
    EXPECT_EQ(highlights.data(highlights.index(0), HighlightModel::colorRole).toString(), "#ff0000");
    ClipModel recents;
    recents.update({{"/clips/game one/", true}});
    EXPECT_EQ(recents.data(recents.index(0), ClipModel::nameRole), "game one");
    EXPECT_EQ(recents.data(recents.index(1), ClipModel::nameRole), QVariant());
}

} // namespace
} // namespace zelvra
