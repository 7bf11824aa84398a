// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/h264/SmallNals.h"

#include <gtest/gtest.h>

#include <random>

namespace zelvra::bitstream {
namespace {

constexpr std::uint8_t header[]{0x67};

TEST(Bits, AreReadBackAsWrittenThroughEmulationPrevention) {
    BitWriter writer;
    writer.bits(0, 32); // three zero bytes in a row, and a fourth
    for (const std::uint32_t value : {0U, 1U, 2U, 254U, 65535U, 0xFFFFFFFEU}) {
        writer.ue(value);
    }
    for (const std::int32_t value : {0, 1, -1, 40, -2147483647}) {
        writer.se(value);
    }
    writer.bits(0x5A5A5A5A, 31);
    writer.trailingBits();
    const Bytes nal = withEmulationPrevention(header, writer.payload());
    EXPECT_GT(nal.size(), writer.payload().size() + 1);
    EXPECT_EQ(withoutEmulationPrevention(ByteView(nal).subspan(1)), writer.payload());

    BitReader reader(ByteView(nal).subspan(1));
    EXPECT_EQ(reader.bits(32), 0U);
    for (const std::uint32_t value : {0U, 1U, 2U, 254U, 65535U, 0xFFFFFFFEU}) {
        EXPECT_EQ(reader.ue(), value);
    }
    for (const std::int32_t value : {0, 1, -1, 40, -2147483647}) {
        EXPECT_EQ(reader.se(), value);
    }
    EXPECT_TRUE(reader.moreData());
    EXPECT_EQ(reader.bitsBeforeStop(), 31U);
    EXPECT_EQ(reader.bits(31), 0x5A5A5A5AU);
    EXPECT_FALSE(reader.moreData());
}

TEST(Bits, SurviveRandomPayloadsFullOfZeros) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        Bytes payload(1 + random() % 60);
        for (std::uint8_t& byte : payload) {
            byte = static_cast<std::uint8_t>(random() % 3 == 0 ? random() % 5 : 0);
        }
        payload.push_back(0x80); // closing bits, which words of zeros may follow
        payload.resize(payload.size() + random() % 3 * 2);
        const Bytes nal = withEmulationPrevention(header, payload);
        for (std::size_t i = 0; i + 2 < nal.size(); ++i) {
            EXPECT_FALSE(nal[i] == 0 && nal[i + 1] == 0 && nal[i + 2] < 3);
        }
        EXPECT_NE(nal.back(), 0);
        BitReader reader(ByteView(nal).subspan(1));
        BitWriter copy;
        EXPECT_EQ(reader.bitsLeft(), payload.size() * 8);
        copy.copy(reader, payload.size() * 8);
        EXPECT_EQ(copy.payload(), payload);
    }
}

TEST(Bits, RefuseNumbersBeyond32BitsAndReadingPastTheEnd) {
    const Bytes tooLong{0, 0, 0x03, 0, 0, 0x03, 0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_THROW(BitReader(tooLong).ue(), BitstreamError);
    const Bytes two{0x12, 0x34};
    BitReader reader(two);
    EXPECT_EQ(reader.bits(12), 0x123U);
    EXPECT_THROW(reader.bits(5), BitstreamError);
    EXPECT_THROW(BitReader(two).skip(std::uint64_t{1} << 60), BitstreamError);
}

TEST(NalUnits, SplitAndJoinWithLengthsOfOneTwoAndFourBytes) {
    const std::vector<Bytes> nals{{1, 2, 3}, Bytes(200, 9), {7}};
    for (const int lengthSize : {1, 2, 4}) {
        const Bytes sample = joinNalUnits(nals, lengthSize);
        const auto split = splitNalUnits(sample, lengthSize);
        ASSERT_EQ(split.size(), 3U);
        EXPECT_EQ(Bytes(split[1].begin(), split[1].end()), nals[1]);
        EXPECT_THROW(splitNalUnits(ByteView(sample).first(sample.size() - 1), lengthSize), BitstreamError);
    }
    EXPECT_TRUE(splitNalUnits(Bytes{0, 0, 0, 0}, 4).empty());
    EXPECT_THROW(splitNalUnits(Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0}, 4), BitstreamError);
    EXPECT_THROW(joinNalUnits(std::vector<Bytes>{Bytes(300)}, 1), BitstreamError);
    EXPECT_THROW(splitNalUnits(Bytes{0, 0, 1, 5}, 3), BitstreamError);
}

TEST(FreeId, IsTheLowestOneNotInUseUntilAllAreUsed) {
    EXPECT_EQ(lowestFreeId({}, 16), 0);
    EXPECT_EQ(lowestFreeId({0, 1, 3}, 16), 2);
    EXPECT_THROW(lowestFreeId({0, 1}, 2), BitstreamError);
}

TEST(RecoveryPoint, IsReadBackAsWritten) {
    EXPECT_EQ(h264::recoveryPointSei(0), (Bytes{0x06, 0x06, 0x01, 0xC4, 0x80}));
    EXPECT_EQ(h264::recoveryFrameCount(h264::recoveryPointSei(0)), 0U);
    EXPECT_EQ(h264::recoveryFrameCount(h264::recoveryPointSei(60)), 60U);
    EXPECT_EQ(h264::recoveryFrameCount(Bytes{0x06, 0x05, 0x02, 0xAA, 0xBB, 0x80}), std::nullopt);
    EXPECT_EQ(h264::recoveryFrameCount(Bytes{0x06, 0x06, 0xFF, 0x80}), std::nullopt);
}

} // namespace
} // namespace zelvra::bitstream
