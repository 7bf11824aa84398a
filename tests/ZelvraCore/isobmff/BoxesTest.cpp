// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/Boxes.h"

#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/records/MediaError.h"

#include <gtest/gtest.h>

namespace zelvra::isobmff {
namespace {

constexpr std::uint64_t beyond32 = std::uint64_t{1} << 33;

std::vector<std::uint8_t> anEntry(FourCharCode type) {
    return makeBox(type, std::vector<std::uint8_t>{1, 2, 3, 4, 5});
}

constexpr MatrixFields turned{0, 0x10000, 0, -0x10000, 0, 0, 1080 << 16, 0, 0x40000000};

/// Boxes of a type with all fields filled, one for each version.
template <class Box>
std::vector<Box> filled();
template <>
std::vector<FileTypeBox> filled() {
    return {{fourCharCode("isom"), 512, {fourCharCode("iso2"), fourCharCode("avc1")}}};
}
template <>
std::vector<MovieHeaderBox> filled() {
    return {{0, 0, 11, 12, 600, 13, 0x20000, 0x80, turned, 3},
            {1, 5, beyond32, beyond32 + 1, 600, beyond32 + 2, 0x10000, 0x100, turned, 3}};
}
template <>
std::vector<TrackHeaderBox> filled() {
    return {{0, 7, 21, 22, 2, 23, -1, 1, 0x100, turned, 1920 << 16, 1080 << 16},
            {1, 15, beyond32, 22, 2, beyond32, -1, 1, 0x100, turned, 1920 << 16, 1080 << 16}};
}
template <>
std::vector<EditListBox> filled() {
    return {{0, 0, {{100, -1}, {200, 7, 0}}}, {1, 0, {{beyond32, -1}, {200, std::int64_t{1} << 40}}}};
}
template <>
std::vector<MediaHeaderBox> filled() {
    return {{0, 0, 31, 32, 48000, 33, 0x55C4, 4}, {1, 0, beyond32, 32, 48000, beyond32, 0x55C4, 4}};
}
template <>
std::vector<HandlerBox> filled() {
    return {{0, 0, fourCharCode("mhlr"), soundHandler, {3, 'a', 'b', 'c'}}};
}
template <>
std::vector<VideoMediaHeaderBox> filled() {
    return {{0, 1, 64, {1, 2, 3, 4, 5, 6}}};
}
template <>
std::vector<SoundMediaHeaderBox> filled() {
    return {{0, 0, -5}};
}
template <>
std::vector<DataReferenceBox> filled() {
    return {{0, 0, {DataReferenceBox::selfContained(fourCharCode("url "))}}};
}
template <>
std::vector<SampleDescriptionBox> filled() {
    return {{0, 0, {anEntry(fourCharCode("avc1")), anEntry(fourCharCode("hvc1"))}}};
}
template <>
std::vector<TimeToSampleBox> filled() {
    return {{0, 0, {{3, 1001}, {1, 0xFFFFFFFF}}}};
}
template <>
std::vector<CompositionOffsetBox> filled() {
    return {{0, 0, {{3, 1001}}}, {1, 0, {{3, 2002}, {1, -1001}}}};
}
template <>
std::vector<SyncSampleBox> filled() {
    return {{0, 0, {1, 31, 61}}};
}
template <>
std::vector<PartialSyncSampleBox> filled() {
    return {{0, 0, {1, 31, 61}}};
}
template <>
std::vector<SampleToChunkBox> filled() {
    return {{0, 0, {{1, 15, 1}, {9, 3, 2}}}};
}
template <>
std::vector<SampleSizeBox> filled() {
    return {{0, 0, 0, 3, {100, 20, 0xFFFFFFFF}}, {0, 0, 4, 1000000, {}}};
}
template <>
std::vector<CompactSampleSizeBox> filled() {
    return {{0, 0, 4, {1, 15, 7}}, {0, 0, 8, {1, 255}}, {0, 0, 16, {1, 65535}}};
}
template <>
std::vector<ChunkOffsetBox> filled() {
    return {{0, 0, {48, 4000000000}}};
}
template <>
std::vector<LargeChunkOffsetBox> filled() {
    return {{0, 0, {48, beyond32}}};
}
template <>
std::vector<RollDescriptionBox> filled() {
    return {{1, 0, RollDescriptionBox::grouping, 2, {-1, 3}}};
}
template <>
std::vector<SampleToGroupBox> filled() {
    return {{0, 0, RollDescriptionBox::grouping, {{5, 1}, {3, 0}}}};
}
template <>
std::vector<TrackExtendsBox> filled() {
    return {{0, 0, 2, 1, 1024, 600, 0x10000}};
}
template <>
std::vector<TrackFragmentHeaderBox> filled() {
    return {{0, 0x3B, 2, beyond32, 1, 512, 100, 0x10000}, {0, 0x20000, 2, 0, 0, 0, 0, 0}};
}
template <>
std::vector<TrackFragmentDecodeTimeBox> filled() {
    return {{0, 0, 41}, {1, 0, beyond32}};
}
template <>
std::vector<TrackRunBox> filled() {
    return {{1, 0xF05, 2, -8, 0x2000000, {{512, 100, 0x10000, -512}, {512, 90, 0, 1024}}},
            {0, 0x201, 1, 64, 0, {{0, 70, 0, 0}}},
            {0, 0, 1000, 0, 0, {}}};
}

template <class Box>
std::vector<std::uint8_t> written(Box box) {
    BoxWriter writer;
    writeBox(writer, box);
    return writer.take();
}

template <class Box>
Box reread(const std::vector<std::uint8_t>& bytes) {
    return readBox<Box>(rawBoxes(bytes).front().payload);
}

/// `box` with the last bit of its flags flipped; every box except `ftyp` has flags.
template <class Box>
Box modified(Box box) {
    if constexpr (requires { box.flags; }) {
        box.flags ^= 0x800000;
    } else {
        box.minorVersion ^= 1;
    }
    return box;
}

template <class Box>
class BoxLaws : public testing::Test {};

using AllBoxes =
    testing::Types<FileTypeBox, MovieHeaderBox, TrackHeaderBox, EditListBox, MediaHeaderBox, HandlerBox,
                   VideoMediaHeaderBox, SoundMediaHeaderBox, DataReferenceBox, SampleDescriptionBox,
                   TimeToSampleBox, CompositionOffsetBox, SyncSampleBox, PartialSyncSampleBox,
                   SampleToChunkBox, SampleSizeBox, CompactSampleSizeBox, ChunkOffsetBox, LargeChunkOffsetBox,
                   RollDescriptionBox, SampleToGroupBox, TrackExtendsBox, TrackFragmentHeaderBox,
                   TrackFragmentDecodeTimeBox, TrackRunBox>;
TYPED_TEST_SUITE(BoxLaws, AllBoxes);

TYPED_TEST(BoxLaws, DeclareTheSizeAndTypeOfTheirBytes) {
    for (const TypeParam& box : filled<TypeParam>()) {
        const auto bytes = written(box);
        const std::vector<RawBox> boxes = rawBoxes(bytes);
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes.front().whole.size(), bytes.size());
        EXPECT_EQ(boxes.front().type, TypeParam::type);
    }
}

TYPED_TEST(BoxLaws, AreReadBackAsWritten) {
    EXPECT_EQ(reread<TypeParam>(written(TypeParam{})), TypeParam{});
    for (const TypeParam& box : filled<TypeParam>()) {
        EXPECT_EQ(reread<TypeParam>(written(box)), box);
    }
}

TYPED_TEST(BoxLaws, ModifiedAndRewrittenDifferInThatOnly) {
    for (const TypeParam& box : filled<TypeParam>()) {
        const auto changed = reread<TypeParam>(written(modified(box)));
        EXPECT_FALSE(changed == box);
        EXPECT_EQ(modified(changed), box);
    }
}

TYPED_TEST(BoxLaws, CutShortAreRefusedOrReadAsLess) {
    for (const TypeParam& box : filled<TypeParam>()) {
        const auto bytes = written(box);
        const auto payload = std::span(bytes).subspan(8);
        for (std::size_t size = 0; size < payload.size(); ++size) {
            try {
                EXPECT_FALSE(readBox<TypeParam>(payload.first(size)) == box) << size;
            } catch (const MediaError& error) {
                EXPECT_EQ(error.cause(), MediaError::Cause::corrupt);
            }
        }
    }
}

TEST(Boxes, WithACountBeyondTheirEndAreRefusedBeforeMemoryIsTaken) {
    auto bytes = written(SampleSizeBox{0, 0, 0, 1, {7}});
    bytes[16] = 0xFF; // the number of samples
    EXPECT_THROW(reread<SampleSizeBox>(bytes), MediaError);
}

TEST(Boxes, OfUnknownVersionsAreUnsupported) {
    try {
        readBox<MovieHeaderBox>(std::vector<std::uint8_t>(120, 2));
        FAIL();
    } catch (const MediaError& error) {
        EXPECT_EQ(error.cause(), MediaError::Cause::unsupported);
        EXPECT_STREQ(error.what(), "box 'mvhd' has the unknown version 2");
    }
}

TEST(Boxes, UseWideFieldsOnlyIfANumberNeedsThem) {
    MovieHeaderBox header;
    header.duration = 0xFFFFFFFF;
    EXPECT_EQ(header.minVersion(), 0);
    header.duration = beyond32;
    EXPECT_EQ(header.minVersion(), 1);
    EXPECT_EQ((EditListBox{0, 0, {{1, 0x7FFFFFFF}}}.minVersion()), 0);
    EXPECT_EQ((EditListBox{0, 0, {{1, 0x80000000}}}.minVersion()), 1);
}

TEST(RawBoxes, AreFoundAfterEveryFormOfSoundEntry) {
    const auto esds = makeBox(fourCharCode("esds"), std::vector<std::uint8_t>{9});
    for (const auto& [version, header] : {std::pair{0, 28}, {1, 44}, {2, 64}}) {
        std::vector<std::uint8_t> payload(static_cast<std::size_t>(header));
        payload[9] = static_cast<std::uint8_t>(version);
        payload.insert(payload.end(), esds.begin(), esds.end());
        const auto entry = makeBox(fourCharCode("mp4a"), payload);
        const auto boxes = soundEntryBoxes(entry);
        ASSERT_NE(findBox(boxes, fourCharCode("esds")), nullptr) << version;
        EXPECT_EQ(findBox(boxes, fourCharCode("esds"))->payload[0], 9);
    }
}

TEST(RawBoxes, MayHaveLongSizesOrReachToTheEndAndMayEndWithATerminator) {
    const std::vector<std::uint8_t> bytes{0, 0, 0,  1,   'l', 'o', 'n', 'g', 0,   0,   0,   0,  0,
                                          0, 0, 17, 'x', 0,   0,   0,   0,   'r', 'e', 's', 't'};
    const auto boxes = rawBoxes(bytes);
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].payload.size(), 1u);
    EXPECT_EQ(boxes[1].type, fourCharCode("rest"));
    EXPECT_TRUE(rawBoxes(std::vector<std::uint8_t>(4)).empty());
    EXPECT_THROW(rawBoxes(std::vector<std::uint8_t>{0, 0, 0, 9, 't', 'e', 'x', 't'}), MediaError);
}

} // namespace
} // namespace zelvra::isobmff
