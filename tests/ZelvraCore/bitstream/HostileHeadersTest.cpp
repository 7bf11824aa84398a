// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/h264/PictureScanner.h"
#include "ZelvraCore/bitstream/hevc/PictureScanner.h"
#include "tests/ZelvraCore/bitstream/CodedMovie.h"

#include <gtest/gtest.h>

#include <random>

namespace zelvra {
namespace {

using bitstream::Bytes;
using test::MovieCodec;
using test::NumberedMovie;

/// Flips some bits of the first bytes, or cuts off the end, as in a damaged or malicious file.
Bytes damaged(Bytes bytes, std::mt19937& random) {
    if (random() % 4 == 0) {
        bytes.resize(random() % bytes.size());
    }
    for (int i = 0; i < 3 && !bytes.empty(); ++i) {
        bytes[random() % std::min<std::size_t>(bytes.size(), 80)] ^=
            static_cast<std::uint8_t>(1 << random() % 8);
    }
    return bytes;
}

template <class Record, class Sets, class Scanner>
void expectReadOrRefused(const test::CodedMovie& movie) {
    std::mt19937 random(1);
    int refused = 0;
    for (int round = 0; round < 2000; ++round) {
        try {
            const auto record = Record::parse(damaged(movie.configuration, random));
            Scanner scanner(Sets(record), 4);
            for (int i = 0; i < 3; ++i) {
                scanner.scan(damaged(movie.samples[random() % movie.samples.size()], random));
            }
        } catch (const bitstream::BitstreamError& error) {
            EXPECT_STRNE(error.what(), "");
            ++refused;
        }
    }
    EXPECT_GT(refused, 500);
}

TEST(HostileHeaders, AreReadOrRefusedWithoutACrash) {
    expectReadOrRefused<h264::AvcConfiguration, h264::ParameterSets, h264::PictureScanner>(
        readCodedMovie(NumberedMovie{.interlaced = true}));
    expectReadOrRefused<hevc::HevcConfiguration, hevc::ParameterSets, hevc::PictureScanner>(
        readCodedMovie(NumberedMovie{.codec = MovieCodec::hevc}));
}

TEST(HostileHeaders, OfLayeredOrPartitionedVideoAreUnsupported) {
    const auto cause = [](const auto& parse) {
        try {
            parse();
        } catch (const bitstream::BitstreamError& error) {
            return error.cause();
        }
        return MediaError::Cause::cancelled;
    };
    const h264::ParameterSets none;
    EXPECT_EQ(cause([&] { parseSliceHeader(Bytes{0x62, 0x88}, none); }), MediaError::Cause::unsupported);
    EXPECT_EQ(cause([&] { parseSliceHeader(Bytes{0x61, 0x88}, none); }), MediaError::Cause::corrupt);
    const hevc::ParameterSets nothing;
    EXPECT_EQ(cause([&] { parseSliceHeader(Bytes{0x02, 0x09, 0x80}, nothing); }),
              MediaError::Cause::unsupported);
    EXPECT_EQ(cause([&] { hevc::parsePps(Bytes{0x44, 0x09, 0x80}); }), MediaError::Cause::unsupported);
}

} // namespace
} // namespace zelvra
