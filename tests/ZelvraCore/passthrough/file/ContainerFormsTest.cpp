// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/ContainerForms.h"

#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/isobmff/RawBoxes.h"

#include <gtest/gtest.h>

#include <string>

namespace zelvra::passthrough {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Container = MovieContainer;

Bytes box(const char (&type)[5], const Bytes& payload) {
    return isobmff::makeBox(fourCharCode(type), payload);
}

Bytes joined(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

TEST(ContainerForms, GiveMetadataTheFormOfTheContainerAndBack) {
    const Bytes items =
        joined({box("hdlr", Bytes(24, 1)), box("keys", Bytes(8, 2)), box("ilst", Bytes(8, 3))});
    const Bytes quickTime = box("meta", items);
    const Bytes mpeg4 = box("meta", joined({Bytes(4, 0), items}));
    EXPECT_EQ(userDataFor(Container::mpeg4, quickTime), mpeg4);
    EXPECT_EQ(userDataFor(Container::quickTime, mpeg4), quickTime);
    EXPECT_EQ(userDataFor(Container::appleM4v, mpeg4), mpeg4);
    EXPECT_EQ(userDataFor(Container::quickTime, quickTime), quickTime);
}

TEST(ContainerForms, KeepPlaceAndDateButNoChapters) {
    const Bytes place = box("\xA9xyz", Bytes(20, 7));
    const Bytes source = joined(
        {box("udta", joined({place, box("chpl", Bytes(12, 0)), Bytes(4, 0)})), box("uuid", Bytes(16, 9))});
    EXPECT_EQ(userDataFor(Container::mpeg4, source), joined({box("udta", place), box("uuid", Bytes(16, 9))}));
}

TEST(ContainerForms, LeaveOutUserDataOfAWrongSize) {
    Bytes broken = box("udta", box("name", Bytes(4, 1)));
    broken[11] = 200; // the item inside
    EXPECT_TRUE(userDataFor(Container::mpeg4, broken).empty());
}

TEST(ContainerForms, NameColoursAsTheContainerDoes) {
    const Bytes fields(78, 0);
    const Bytes values{0, 9, 0, 16, 0, 9};
    const auto entry = [&](const char* kind, const Bytes& range) {
        return box("hvc1", joined({fields, box("colr", joined({Bytes(kind, kind + 4), values, range}))}));
    };
    EXPECT_EQ(visualEntryFor(Container::mpeg4, entry("nclc", {}), true), entry("nclx", {0x80}));
    EXPECT_EQ(visualEntryFor(Container::mpeg4, entry("nclc", {}), false), entry("nclx", {0}));
    EXPECT_EQ(visualEntryFor(Container::quickTime, entry("nclx", {0}), false), entry("nclc", {}));
    EXPECT_EQ(visualEntryFor(Container::mpeg4, entry("nclx", {0x80}), true), entry("nclx", {0x80}));
}

} // namespace
} // namespace zelvra::passthrough
