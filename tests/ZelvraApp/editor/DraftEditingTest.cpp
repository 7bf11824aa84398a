// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/DraftEditing.h"
#include "ZelvraApp/session/Colors.h"
#include "tests/ZelvraApp/editor/Shapes.h"

#include <gtest/gtest.h>

#include <memory>

namespace zelvra::test {
namespace {

HighlightDraft draftOf(const DraftShape& shape, Size display = {1920, 1080}) {
    return {.id = {},
            .timestamp = {},
            .durationSec = 3,
            .frame = Image(std::make_shared<const Image::Raster>(), {}),
            .videoDisplaySize = display,
            .shape = shape,
            .isEditing = false};
}

TEST(DraftEditing, PutsTheRimToTheRightOfTheCentre) {
    const DraftShape sized = withRadius(draftOf(circleOf({0.5, 0.5}, {0.5, 0.9})), 0.1);
    EXPECT_EQ(sized.p1, (Point{0.5, 0.5}));
    EXPECT_DOUBLE_EQ(sized.p2.x, 0.55625);
    EXPECT_EQ(sized.p2.y, 0.5);
    EXPECT_EQ(withRadius(draftOf(arrowOf({0.1, 0.2}, {0.3, 0.4})), 0.1).p2, (Point{0.3, 0.4}));
    EXPECT_EQ(withRadius(draftOf(circleOf({0, 0}, {0, 0}), {2, 0}), 0.1).p2, (Point{0.05, 0}));
}

TEST(DraftEditing, BeginsAnotherKindInTheMiddleInTheSameStyle) {
    const HighlightDraft draft = draftOf(circleOf({0.1, 0.2}, {0.3, 0.4}));
    const DraftShape arrow = withKind(draft, HighlightShapeKind::arrow, 0.06);
    EXPECT_EQ(arrow.kind, HighlightShapeKind::arrow);
    EXPECT_EQ(arrow.p1, (Point{0.3, 0.5}));
    EXPECT_EQ(arrow.p2, (Point{0.7, 0.5}));
    EXPECT_NE(arrow.id, draft.shape.id);
    EXPECT_EQ(arrow.color, draft.shape.color);
    EXPECT_EQ(arrow.strokeWidthRatio, draft.shape.strokeWidthRatio);

    const DraftShape rectangle = withKind(draft, HighlightShapeKind::rectangle, 0.06);
    EXPECT_EQ(rectangle.p1, (Point{0.35, 0.35}));
    EXPECT_EQ(rectangle.p2, (Point{0.65, 0.65}));

    const DraftShape circle = withKind(draftOf(arrow), HighlightShapeKind::circle, 0.06);
    EXPECT_EQ(circle.p1, (Point{0.5, 0.5}));
    EXPECT_DOUBLE_EQ(circle.p2.x, 0.5 + 0.06 * 1080 / 1920);
    EXPECT_EQ(circle.p2.y, 0.5);
}

TEST(DraftEditing, LeavesAShapeOfTheChosenKindAlone) {
    const HighlightDraft draft = draftOf(circleOf({0.1, 0.2}, {0.3, 0.4}));
    const DraftShape same = withKind(draft, HighlightShapeKind::circle, 0.06);
    EXPECT_EQ(same.id, draft.shape.id);
    EXPECT_EQ(same.p2, (Point{0.3, 0.4}));
}

TEST(Colors, AreTheSameShownChosenAndSaved) {
    for (int part = 0; part < 256; ++part) {
        const QColor shown(part, 255 - part, 7, 128);
        const Color chosen = fromQColor(shown);
        EXPECT_EQ(hexString(chosen), shown.name(QColor::HexRgb).toUpper());
        EXPECT_EQ(toQColor(chosen).rgb(), shown.rgb());
    }
}

} // namespace
} // namespace zelvra::test
