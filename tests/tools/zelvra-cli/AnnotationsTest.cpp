// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/Annotations.h"

#include "tools/zelvra-cli/HighlightText.h"

#include <gtest/gtest.h>

namespace zelvra::cli {
namespace {

TEST(Annotations, ReadsHighlightsRangeAndSound) {
    const Annotations read = parseAnnotations(R"({
        "highlights": [
            {"at": 12.5},
            {"at": "01:15.5", "duration": 1.25,
             "shape": {"kind": "rectangle", "p1": [0.1, 0.2], "p2": [0.5, 0.6],
                       "color": "#FF0000", "strokeWidthRatio": 0.02}}],
        "range": {"from": "10/1", "to": 80}, "includeAudio": false})");
    ASSERT_EQ(read.highlights.size(), 2U);
    EXPECT_EQ(read.highlights[0].timestamp, CMTime(25, 2));
    EXPECT_EQ(read.highlights[0].duration, CMTime(3, 1));
    EXPECT_EQ(read.highlights[1].duration, CMTime(5, 4));
    EXPECT_EQ(read.highlights[1].shape.kind, HighlightShapeKind::rectangle);
    EXPECT_EQ(read.highlights[1].shape.p2, (Point{0.5, 0.6}));
    EXPECT_EQ(read.highlights[1].shape.strokeWidthRatio, 0.02);
    EXPECT_EQ(read.from, CMTime(10, 1));
    EXPECT_EQ(read.to, CMTime(80, 1));
    EXPECT_EQ(read.includeAudio, false);
    EXPECT_FALSE(parseAnnotations("{}").from);
}

TEST(Annotations, ReportsWhereTheMistakeIs) {
    const auto errorFor = [](const char* json) -> std::string {
        try {
            parseAnnotations(json);
        } catch (const BadRequest& error) {
            return error.what();
        }
        return "understood";
    };
    EXPECT_EQ(errorFor("{"), "no JSON at byte 2");
    EXPECT_EQ(errorFor("[]"), "an object is expected, not []");
    EXPECT_EQ(errorFor(R"({"highlight": []})"), "unknown name \"highlight\"");
    EXPECT_EQ(errorFor(R"({"highlights": [{"at": 1}, {"at": -1}]})"),
              "highlight 2: invalid timestamp: -1.000000");
    EXPECT_EQ(errorFor(R"({"highlights": [{"at": 1, "shape": {"p1": [1]}}]})"),
              "highlight 1: a point [x, y] is expected, not [1]");
    EXPECT_EQ(errorFor(R"({"highlights": [{"at": 1, "shape": {"color": 7}}]})"),
              "highlight 1: a text is expected, not 7");
    EXPECT_EQ(errorFor(R"({"range": {"from": "x"}})"), "range: invalid timestamp: x");
    EXPECT_EQ(errorFor(R"({"includeAudio": 1})"), "includeAudio: true or false is expected, not 1");
    EXPECT_EQ(errorFor(R"({"highlights": [{"at": 1e999}]})"), "no JSON: a number is too large");
}

} // namespace
} // namespace zelvra::cli
