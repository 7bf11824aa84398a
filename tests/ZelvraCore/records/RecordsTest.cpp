// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/FourCharCode.h"
#include "ZelvraCore/records/Highlight.h"
#include "ZelvraCore/records/MovieIdentity.h"
#include "ZelvraCore/records/ZVError.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace zelvra {
namespace {

TEST(HighlightShapeKind, IsReadFromItsExactRawStringOnly) {
    for (const char* raw : {"circle", "arrow", "rectangle"}) {
        EXPECT_EQ(rawValue(highlightShapeKind(raw).value()), raw);
    }
    for (const char* unknown : {"", "Circle", "square", "circle "}) {
        EXPECT_FALSE(highlightShapeKind(unknown)) << unknown;
    }
}

TEST(ZVError, ReadsAsOneLine) {
    EXPECT_EQ(ZVError::contextCreationFailed("overlay").description(), "CGContext creation failed: overlay");
    EXPECT_EQ(ZVError::writerFailed().description(), "AVAssetWriter failed: unknown");
    EXPECT_EQ(ZVError::writerFailed("disk full").description(), "AVAssetWriter failed: disk full");
    EXPECT_EQ(ZVError::exportFailed().description(), "export failed: unknown");
    EXPECT_EQ(ZVError::fileNotFound("/a b").description(), "file not found: /a b");
    EXPECT_EQ(ZVError::invalidTimestamp("x").description(), "invalid timestamp: x");
    EXPECT_EQ(ZVError::noVideoTrack().description(), "no video track in asset");
    EXPECT_STREQ(ZVError::frameExtractionFailed().what(), "frame extraction failed");
}

TEST(FourCharCode, ReadsFromTheMostSignificantByte) {
    EXPECT_EQ(fourCharString(0x61766331), "avc1");
    EXPECT_EQ(fourCharCode("avc1"), 0x61766331u);
}

TEST(AffineTransform, TurnsAPictureOnItsSide) {
    const AffineTransform quarterTurn{0, 1, -1, 0, 1080, 0};
    EXPECT_EQ(quarterTurn.boundingSize({1920, 1080}), (Size{1080, 1920}));
    EXPECT_EQ(quarterTurn.apply({0, 0}), (Point{1080, 0}));
    EXPECT_FALSE(quarterTurn.isIdentity());
    EXPECT_TRUE(AffineTransform{}.isIdentity());
}

TEST(Uuid, IsRandomAndInStandardText) {
    std::set<Uuid> seen;
    for (int i = 0; i < 1000; ++i) {
        const Uuid uuid = Uuid::random();
        EXPECT_TRUE(std::regex_match(
            uuid.text(), std::regex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}")));
        EXPECT_TRUE(seen.insert(uuid).second);
        EXPECT_EQ(Uuid::fromText(uuid.text()), uuid);
    }
    const auto lower = Uuid::fromText("0e4b0000-0000-4000-8000-00000000000a");
    ASSERT_TRUE(lower);
    EXPECT_EQ(lower->text(), "0E4B0000-0000-4000-8000-00000000000A");
    for (const char* text : {"", "0E4B0000-0000-4000-8000-00000000000",
                             "0E4B0000-0000-4000-8000-00000000000A0", "0E4B00000-000-4000-8000-00000000000A",
                             "0E4B0000-0000-4000-8000-00000000000G", "0E4B0000000040008000-00000000000A"}) {
        EXPECT_EQ(Uuid::fromText(text), std::nullopt) << text;
    }
}

TEST(MovieIdentity, HasOneTextThatIsAFileName) {
    MovieIdentity identity{.size = 4096};
    identity.digest.back() = 0xAB;
    EXPECT_EQ(identity.text(), "4096-000000000000000000000000000000ab");
    EXPECT_EQ(MovieIdentity::fromText(identity.text()), identity);
    for (const char* text :
         {"", "-", "4096", "4096-", "4096-ab", "04096-000000000000000000000000000000ab",
          "4096-000000000000000000000000000000AB", "-000000000000000000000000000000ab",
          "99999999999999999999-000000000000000000000000000000ab", "4096-000000000000000000000000000000zz"}) {
        EXPECT_EQ(MovieIdentity::fromText(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace zelvra
