// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/NaturalOrder.h"

#include <QLocale>

#include <gmock/gmock.h>

namespace zelvra {
namespace {

using Paths = std::vector<std::filesystem::path>;
using testing::ElementsAre;

class NaturalOrderIn : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override { QLocale::setDefault(QLocale(QString::fromLatin1(GetParam()))); }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }
};

TEST_P(NaturalOrderIn, CountsDigitsAndIgnoresCase) {
    Paths paths{"b/clip10.mov", "a/Clip2.MP4", "z/clip1.m4v", "a/clip 3.mov", "Änderung.mov", "zebra.mov"};
    sortInNaturalOrder(paths);
    EXPECT_THAT(Paths(paths.end() - 4, paths.end() - 1),
                ElementsAre("z/clip1.m4v", "a/Clip2.MP4", "b/clip10.mov"));
    EXPECT_EQ(paths.front(), "Änderung.mov");
    EXPECT_EQ(paths.back(), "zebra.mov");
}

INSTANTIATE_TEST_SUITE_P(Locales, NaturalOrderIn, testing::Values("C", "en_US", "de_DE", "fr_FR", "ja_JP"));

TEST(NaturalOrder, KeepsThePlacesOfEqualNames) {
    Paths paths{"one/clip.mov", "two/CLIP.mov", "three/clip.mov", "two/Clip.mov"};
    const Paths before = paths;
    sortInNaturalOrder(paths);
    EXPECT_EQ(paths, before);
}

TEST(NaturalOrder, KeepsNamesThatAreNoText) {
    Paths paths{"clip2.mov", "\xff\xfe.mov", "clip1 \xf0\x9f\x8f\x80.mov"};
    sortInNaturalOrder(paths);
    EXPECT_THAT(paths,
                testing::UnorderedElementsAre("clip2.mov", "\xff\xfe.mov", "clip1 \xf0\x9f\x8f\x80.mov"));
}

} // namespace
} // namespace zelvra
