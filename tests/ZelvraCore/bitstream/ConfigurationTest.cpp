// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"
#include "ZelvraCore/bitstream/hevc/HevcConfiguration.h"
#include "ZelvraCore/bitstream/hevc/Sps.h"
#include "tests/ZelvraCore/bitstream/CodedMovie.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

namespace zelvra {
namespace {

using bitstream::BitstreamError;
using bitstream::Bytes;
using bitstream::ByteView;
using test::MovieCodec;
using test::NumberedMovie;

template <class Record>
void expectSameBytesAndNoTruncation(const Bytes& content) {
    EXPECT_EQ(Record::parse(content).serialise(), content);
    // The trailer is all remaining bytes, so only the bytes before it can be missing.
    const std::size_t needed = content.size() - Record::parse(content).trailer.size();
    for (std::size_t size = 0; size < needed; ++size) {
        EXPECT_THROW(Record::parse(ByteView(content).first(size)), BitstreamError) << size;
    }
}

TEST(Configuration, OfRealMoviesIsWrittenAsItWasRead) {
    for (const auto& file : test::sharedMoviesOf(MovieCodec::h264)) {
        expectSameBytesAndNoTruncation<h264::AvcConfiguration>(test::readCodedMovie(file).configuration);
    }
    for (const auto& file : test::sharedMoviesOf(MovieCodec::hevc)) {
        expectSameBytesAndNoTruncation<hevc::HevcConfiguration>(test::readCodedMovie(file).configuration);
    }
}

TEST(AvcConfiguration, AppendsParameterSetsUntilItIsFull) {
    const auto movie = test::readCodedMovie(NumberedMovie{.frames = 10});
    expectSameBytesAndNoTruncation<h264::AvcConfiguration>(movie.configuration);
    auto record = h264::AvcConfiguration::parse(movie.configuration);
    const std::size_t own = record.ppsNals.size();
    record.addPps(record.ppsNals.front());
    EXPECT_EQ(record.ppsNals.size(), own) << "the same set twice";
    record.addPps(Bytes{0x68, 0x42});
    EXPECT_EQ(record.ppsNals.back(), (Bytes{0x68, 0x42}));
    EXPECT_EQ(h264::AvcConfiguration::parse(record.serialise()), record);
    EXPECT_FALSE(record.trailer.empty()) << "a High profile says its chroma format";
    for (std::uint8_t i = 1; i < 31; ++i) {
        record.addSps(Bytes{0x67, i});
    }
    EXPECT_THROW(record.addSps(Bytes{0x67, 99}), BitstreamError);
    EXPECT_THROW(record.addPps(Bytes(70000)), BitstreamError);
}

TEST(HevcConfiguration, OfASpliceGuaranteesOnlyWhatBothStreamsDo) {
    const auto movie = test::readCodedMovie(
        NumberedMovie{.width = 1280, .height = 720, .frames = 10, .codec = MovieCodec::hevc});
    const auto clip = test::readCodedMovie(NumberedMovie{.frames = 10, .codec = MovieCodec::hevc});
    auto source = hevc::HevcConfiguration::parse(movie.configuration);
    auto inserted = hevc::HevcConfiguration::parse(clip.configuration);
    source.spatialSegmentation = 0xF007;
    source.parallelism = 0xFE;
    inserted.spatialSegmentation = 0xF003;
    inserted.constraintFlags &= ~std::uint64_t{1} << 47;
    ASSERT_LT(inserted.levelIdc, source.levelIdc);

    const Bytes twin{0x44, 0x01, 0x77};
    for (const auto& merged :
         {mergeForSplice(source, inserted, {twin}), mergeForSplice(inserted, source, {twin})}) {
        EXPECT_EQ(merged.levelIdc, source.levelIdc);
        EXPECT_EQ(merged.spatialSegmentation, 0xF003);
        EXPECT_EQ(merged.parallelism, 0xFC);
        EXPECT_EQ(merged.constraintFlags, source.constraintFlags & inserted.constraintFlags);
        EXPECT_EQ(merged.nalsOfType(hevc::NalType::sps).size(), 2U);
        const auto pps = merged.nalsOfType(hevc::NalType::pps).back();
        EXPECT_EQ(Bytes(pps.begin(), pps.end()), twin);
        EXPECT_EQ(hevc::HevcConfiguration::parse(merged.serialise()), merged);
    }
    inserted.lumaDepth = 0xFA;
    EXPECT_THROW(mergeForSplice(source, inserted, {}), BitstreamError);
}

TEST(SampleEntry, KeepsItsOtherBoxesWhenOneIsReplaced) {
    const auto movie = test::readCodedMovie(
        NumberedMovie{.frames = 10, .colorTags = "colorspace=bt709", .pixelAspect = "4/3"});
    const Bytes& entry = movie.sampleEntry;
    const auto pasp = bitstream::findChildBox(entry, "pasp");
    ASSERT_TRUE(pasp);
    EXPECT_FALSE(bitstream::findChildBox(entry, "none"));

    EXPECT_EQ(bitstream::replaceChildBox(entry, "avcC", movie.configuration), entry);
    const Bytes longer(500, 3);
    const Bytes replaced = bitstream::replaceChildBox(entry, "avcC", longer);
    EXPECT_EQ(replaced.size(), entry.size() + longer.size() - movie.configuration.size());
    EXPECT_EQ(std::size_t{replaced[2]} << 8 | replaced[3], replaced.size());
    EXPECT_TRUE(std::ranges::equal(*bitstream::findChildBox(replaced, "avcC"), longer));
    EXPECT_TRUE(std::ranges::equal(*bitstream::findChildBox(replaced, "pasp"), *pasp));

    const Bytes without = bitstream::removeChildBox(entry, "pasp");
    EXPECT_FALSE(bitstream::findChildBox(without, "pasp"));
    const Bytes again = bitstream::replaceChildBox(without, "pasp", *pasp);
    EXPECT_EQ(again.size(), entry.size());

    Bytes lying = entry;
    lying[86] = 0x7F; // the first child claims a size of two gigabytes
    EXPECT_THROW(bitstream::findChildBox(lying, "avcC"), BitstreamError);
    EXPECT_THROW(bitstream::findChildBox(ByteView(entry).first(85), "avcC"), BitstreamError);
    // QuickTime closes a list of boxes with four zero bytes, which must stay at the end.
    Bytes closed = entry;
    closed.insert(closed.end(), 4, 0);
    EXPECT_EQ(bitstream::replaceChildBox(closed, "free", {}).size(), closed.size() + 8);
    EXPECT_TRUE(bitstream::findChildBox(bitstream::replaceChildBox(closed, "free", {}), "free"));
}

} // namespace
} // namespace zelvra
