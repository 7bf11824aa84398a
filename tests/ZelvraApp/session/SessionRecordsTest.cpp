// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/session/Colors.h"
#include "ZelvraApp/session/HighlightDraft.h"
#include "ZelvraApp/session/RecentItem.h"
#include "ZelvraApp/session/SavedDefaults.h"
#include "ZelvraApp/session/StyleTexts.h"
#include "ZelvraApp/session/Timecode.h"

#include "tests/support/Files.h"
#include "tests/support/app/Drafts.h"

#include <QJsonObject>

#include <gmock/gmock.h>

#include <cmath>

namespace zelvra {
namespace {

using testing::ElementsAre;

HighlightDraft circleOn(Size display, Point p2) {
    return {.id = Uuid::random(),
            .timestamp = {7, 3},
            .durationSec = 2,
            .frame = test::onePixel(),
            .videoDisplaySize = display,
            .shape = {.id = Uuid::random(),
                      .kind = HighlightShapeKind::circle,
                      .p1 = {0.5, 0.5},
                      .p2 = p2,
                      .color = HighlightDefaults::factory().color,
                      .strokeWidthRatio = 0.004},
            .isEditing = false};
}

TEST(Colors, AreWrittenAsHexRoundedDownAndReadInEitherCase) {
    EXPECT_EQ(hexString(HighlightDefaults::factory().color), "#0A84FF");
    EXPECT_EQ(hexString({0.9999, -1, 7, 0}), "#FE00FF");
    EXPECT_EQ(hexString({std::nan(""), 0, 0, 1}).size(), 7);
    EXPECT_EQ(colorFrom("0a84ff"), HighlightDefaults::factory().color);
    EXPECT_EQ(colorFrom("#0A84FF"), HighlightDefaults::factory().color);
    for (const char* text : {"#0A84F", "##0A84FF", "#GGGGGG", "", "#", "+12345", "0x1234", "１２３４５６"}) {
        EXPECT_EQ(colorFrom(QString::fromUtf8(text)), std::nullopt) << text;
    }
    for (int byte = 0; byte < 256; ++byte) {
        const Color gray{byte / 255.0, byte / 255.0, byte / 255.0, 1};
        EXPECT_EQ(colorFrom(hexString(gray)), gray);
    }
}

TEST(HighlightDefaults, AreEqualIfAUserSeesNoDifference) {
    const HighlightDefaults factory = HighlightDefaults::factory();
    const auto changed = [&](auto change) {
        HighlightDefaults style = factory;
        change(style);
        return style;
    };
    EXPECT_TRUE(changed([](auto& s) { s.radiusRatio += 0.00005; }) == factory);
    EXPECT_FALSE(changed([](auto& s) { s.radiusRatio += 0.0002; }) == factory);
    EXPECT_FALSE(changed([](auto& s) { s.strokeWidthRatio -= 0.0002; }) == factory);
    EXPECT_TRUE(changed([](auto& s) { s.durationSec = 2.995; }) == factory);
    EXPECT_FALSE(changed([](auto& s) { s.durationSec = 2.98; }) == factory);
    EXPECT_TRUE(changed([](auto& s) { s.color.red += 0.002; }) == factory);
    EXPECT_FALSE(changed([](auto& s) { s.color.red += 0.004; }) == factory);
    EXPECT_TRUE(changed([](auto& s) { s.color.alpha = 0; }) == factory);
    EXPECT_FALSE(changed([](auto& s) { s.color.blue = std::nan(""); }) == factory);
    EXPECT_FALSE(identical(changed([](auto& s) { s.durationSec = 2.995; }), factory));
}

TEST(HighlightDefaults, AreSavedAndFallBackFieldByField) {
    const test::TemporaryFolder folder;
    PreferenceStore store(folder / "preferences.json");
    EXPECT_TRUE(identical(loadFromUserDefaults(store), HighlightDefaults::factory()));
    const HighlightDefaults style{{1, 0, 51 / 255.0, 1}, 0.1, -2, 1.5};
    save(style, store);
    EXPECT_TRUE(identical(loadFromUserDefaults(store), style)) << "no range is imposed";

    constexpr PreferenceKey<QString> radiusAsText{"zvDefault.radiusRatio"};
    store.write(PreferenceStore::Changes{}
                    .set(preferences::defaultColorHex, QStringLiteral("red"))
                    .set(radiusAsText, QStringLiteral("0.2")));
    const HighlightDefaults read = loadFromUserDefaults(store);
    EXPECT_EQ(read.color, HighlightDefaults::factory().color);
    EXPECT_EQ(read.radiusRatio, 0.06);
    EXPECT_EQ(read.durationSec, 1.5);
}

TEST(HighlightDraft, MeasuresItsCircleByThePicturesHeight) {
    EXPECT_NEAR(circleOn({1920, 1080}, {0.53375, 0.5}).circleRadiusRatio(), 0.06, 1e-12);
    EXPECT_NEAR(circleOn({1080, 1920}, {0.5, 0.8}).circleRadiusRatio(), 0.3, 1e-12);
    HighlightDraft arrow = circleOn({1920, 1080}, {0.9, 0.9});
    arrow.shape.kind = HighlightShapeKind::arrow;
    EXPECT_EQ(arrow.circleRadiusRatio(), 0);
    EXPECT_TRUE(std::isfinite(circleOn({0, 0}, {0.6, 0.5}).circleRadiusRatio()));
}

TEST(HighlightDraft, BecomesAHighlightAndIsEditedAgain) {
    const HighlightDraft draft = circleOn({1920, 1080}, {0.6, 0.5});
    const Highlight highlight = draft.highlight();
    EXPECT_TRUE(identical(highlight.timestamp, draft.timestamp));
    EXPECT_TRUE(identical(highlight.duration, CMTime{1200, 600}));
    HighlightDraft again = HighlightDraft::editing(highlight, draft.frame, {1920, 1080});
    EXPECT_TRUE(again.isEditing);
    again.isEditing = false;
    EXPECT_TRUE(identical(again, draft));
}

TEST(Recents, KeepTheTenNewestOncePerPath) {
    std::vector<RecentItem> recents;
    for (int i = 0; i <= 10; ++i) {
        recents = noting({QString::number(i), false}, recents);
    }
    EXPECT_EQ(recents.size(), 10U);
    EXPECT_EQ(recents.back().path, "1");
    recents = noting({"5/", true}, recents);
    EXPECT_EQ(recents.size(), 10U);
    EXPECT_EQ(recents.front(), (RecentItem{"5", true}));
    EXPECT_EQ(forgetting("5", recents).size(), 9U);
}

TEST(Recents, AreSavedInOrderAndReadLeniently) {
    const test::TemporaryFolder folder;
    PreferenceStore store(folder / "preferences.json");
    const std::vector<RecentItem> items{{"/a b/“c” 🏀.mov", false}, {"/folder", true}};
    RecentItem::save(items, store);
    EXPECT_EQ(RecentItem::loadFromUserDefaults(PreferenceStore(store.file())), items);

    store.write(preferences::recents,
                QJsonArray{QJsonObject{{"path", "/one"}}, QJsonObject{{"isFolder", true}},
                           QJsonObject{{"path", 5}}, QJsonObject{{"path", "/two"}, {"isFolder", 1}}});
    EXPECT_THAT(RecentItem::loadFromUserDefaults(store),
                ElementsAre(RecentItem{"/one", false}, RecentItem{"/two", false}));
    QJsonArray many{QJsonObject{{"path", "/0/"}}};
    for (int i = 0; i < 10'000; ++i) {
        many.append(QJsonObject{{"path", QString("/%1").arg(i)}});
    }
    store.write(preferences::recents, many);
    EXPECT_EQ(RecentItem::loadFromUserDefaults(store).size(), 10U);
    EXPECT_EQ(RecentItem::loadFromUserDefaults(store)[1].path, "/1");
    store.write(preferences::recents, QJsonArray{QJsonObject{{"path", "/one"}}, "no entry"});
    EXPECT_THAT(RecentItem::loadFromUserDefaults(store), ElementsAre());
}

TEST(StyleTexts, RoundToTheirLastDigit) {
    EXPECT_EQ(radiusText(4.0 / 45), "8.9%");
    EXPECT_EQ(strokeText(0.005), "0.50%");
    EXPECT_EQ(durationText(3), "3.0s");
}

TEST(Timecode, CountsMinutesWithoutHours) {
    EXPECT_EQ(timecode(CMTime::zero()), "00:00.00");
    EXPECT_EQ(timecode(sessionTime(5.25)), "00:05.25");
    EXPECT_EQ(timecode(sessionTime(75.5)), "01:15.50");
    EXPECT_EQ(timecode(sessionTime(3725)), "62:05.00");
    for (const CMTime& time : {CMTime::invalid(), CMTime::positiveInfinity(), CMTime::indefinite()}) {
        EXPECT_EQ(timecode(time), "--:--.--");
    }
}

} // namespace
} // namespace zelvra
