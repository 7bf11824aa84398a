// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/HighlightText.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

TEST(HighlightText, HasTheDefaultStyleIfNothingElseIsGiven) {
    const Highlight plain = parseHighlight("at=01:15.5");
    EXPECT_EQ(plain.timestamp, CMTime(151, 2));
    EXPECT_EQ(plain.duration, CMTime(3, 1));
    EXPECT_EQ(plain.shape.kind, HighlightShapeKind::circle);
    EXPECT_EQ(plain.shape.p1, (Point{0.5, 0.5}));
    EXPECT_NEAR(plain.shape.p2.y - plain.shape.p1.y, 0.06, 1e-12) << "of the height, whatever the width";
    EXPECT_EQ(plain.shape.strokeColor, (Color{10 / 255.0, 132 / 255.0, 1, 1}));
    EXPECT_EQ(plain.shape.strokeWidthRatio, 0.004);
    EXPECT_EQ(parseHighlight("at=1,kind=arrow").shape.p2, (Point{0.7, 0.5}));
    EXPECT_EQ(parseHighlight("at=1,kind=rectangle").shape.p1, (Point{0.35, 0.35}));
    EXPECT_EQ(parseHighlight("at=1,p1=0.2:0.3").shape.p2, (Point{0.2, 0.36}));
}

TEST(HighlightText, ReadsEveryPartInAnyOrder) {
    const Highlight full =
        parseHighlight("stroke=0.01,color=#fFcC00,p2=1.5:-0.25,p1=0.1:.2,kind=arrow,duration=1/2,at=900/600");
    EXPECT_EQ(full.timestamp, CMTime(3, 2));
    EXPECT_EQ(full.duration, CMTime(1, 2));
    EXPECT_EQ(full.shape.kind, HighlightShapeKind::arrow);
    EXPECT_EQ(full.shape.p1, (Point{0.1, 0.2}));
    EXPECT_EQ(full.shape.p2, (Point{1.5, -0.25})) << "outside the picture is allowed";
    EXPECT_EQ(full.shape.strokeColor, (Color{1, 0.8, 0, 1}));
    EXPECT_EQ(full.shape.strokeWidthRatio, 0.01);
}

TEST(HighlightText, ReportsWhatItDoesNotUnderstand) {
    const auto complaint = [](const char* text) -> std::string {
        try {
            parseHighlight(text);
        } catch (const std::exception& error) {
            return error.what();
        }
        return "understood";
    };
    EXPECT_EQ(complaint("kind=circle"), "a highlight needs its time: at=T");
    EXPECT_EQ(complaint("at=soon"), "invalid timestamp: soon");
    EXPECT_EQ(complaint("at=1,at=2"), "said twice: \"at\"");
    EXPECT_EQ(complaint("at=1,colour=#000000"), "unknown part of a highlight: \"colour\"");
    EXPECT_EQ(complaint("at=1,kind=Circle"), "not a kind (circle, arrow, rectangle): \"Circle\"");
    EXPECT_EQ(complaint("at=1,p1=0.5"), "not a point X:Y: \"0.5\"");
    EXPECT_EQ(complaint("at=1,p1=0.5:inf"), "not a number: \"inf\"");
    EXPECT_EQ(complaint("at=1,color=#12345"), "not a color #RRGGBB: \"#12345\"");
    EXPECT_EQ(complaint("at=1,color=#12 345"), "not a color #RRGGBB: \"#12 345\"");
    EXPECT_EQ(complaint("at=1,duration=0"), "a highlight's duration must be above zero");
    EXPECT_EQ(complaint("at=1,stroke=-1"), "a highlight's stroke must not be below zero");
    EXPECT_EQ(complaint("at=1,kind=arrow,p1=0:0"), "arrow needs both p1 and p2, or neither");
    EXPECT_EQ(complaint("at=1,"), "not NAME=VALUE: \"\"");
    EXPECT_EQ(complaint(""), "not NAME=VALUE: \"\"");
}

} // namespace
} // namespace zelvra
