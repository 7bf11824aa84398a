// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/bitstream/h264/PictureScanner.h"
#include "ZelvraCore/bitstream/h264/Still.h"
#include "tests/ZelvraCore/bitstream/CodedMovie.h"
#include "tests/ZelvraCore/bitstream/DecodedPictureBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelvra {
namespace {

using bitstream::Bytes;
using bitstream::ByteView;
using h264::PictureFacts;
using test::CodedMovie;
using test::NumberedMovie;

/// A movie as a stream: its record, its sets, and the facts of each picture.
struct Stream {
    explicit Stream(CodedMovie coded)
        : movie(std::move(coded)), record(h264::AvcConfiguration::parse(movie.configuration)), sets(record) {
        h264::PictureScanner scanner(sets, record.nalLengthSize);
        for (const Bytes& sample : movie.samples) {
            pictures.push_back(scanner.scan(sample));
        }
    }

    CodedMovie movie;
    h264::AvcConfiguration record;
    h264::ParameterSets sets;
    std::vector<PictureFacts> pictures;
};

std::vector<std::size_t> outputOrder(const std::vector<PictureFacts>& pictures) {
    std::vector<std::size_t> order(pictures.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::ranges::stable_sort(order, {},
                             [&](std::size_t i) { return std::pair(pictures[i].period, pictures[i].poc); });
    return order;
}

/// Checks that a slice header was read completely: with CABAC, only one bits follow it up to the next byte,
/// where the slice data starts.
void expectAlignedHeader(ByteView nal, const h264::ParameterSets& sets) {
    const h264::SliceHeader slice = parseSliceHeader(nal, sets);
    if (!sets.pps(slice.ppsId).cabac) {
        return;
    }
    bitstream::BitReader reader(nal.subspan(1));
    reader.skip(slice.headerBits);
    while (!reader.byteAligned()) {
        EXPECT_TRUE(reader.flag());
    }
}

/// Rewriting an intra slice's header for the same parameter sets must not change the slice. Zero bytes with
/// which some encoders pad it after its last bit are not part of it.
void expectSameWhenRewritten(ByteView nal, const h264::ParameterSets& sets) {
    while (!nal.empty() && nal.back() == 0) {
        nal = nal.first(nal.size() - 1);
    }
    const h264::SliceHeader slice = parseSliceHeader(nal, sets);
    if (!slice.idr || slice.type != h264::SliceType::i || slice.fieldPicture || slice.deltaPocBottom != 0 ||
        slice.noOutputOfPriorPics || slice.longTermReference) {
        return;
    }
    const auto& sps = sets.sps(slice.spsId);
    if (whyStillDoesNotFit(sps, sets.pps(slice.ppsId), sps)) {
        return;
    }
    const h264::StillHeader same{.idr = true,
                                 .nalRefIdc = slice.nalRefIdc,
                                 .ppsId = slice.ppsId,
                                 .idrPicId = slice.idrPicId,
                                 .frameNum = slice.frameNum,
                                 .pocLsb = slice.pocLsb,
                                 .deltaPoc = slice.deltaPoc};
    EXPECT_EQ(rewriteSlice(nal, sets, sps, same), Bytes(nal.begin(), nal.end()));
}

void expectReadRight(const Stream& stream) {
    h264::ParameterSets sets = stream.sets;
    for (const Bytes& sample : stream.movie.samples) {
        for (const ByteView nal : bitstream::splitNalUnits(sample, stream.record.nalLengthSize)) {
            sets.add(nal);
            if (h264::isSlice(h264::nalType(nal))) {
                expectAlignedHeader(nal, sets);
                expectSameWhenRewritten(nal, sets);
            }
        }
    }
    for (const auto& [id, pps] : stream.sets.allPps()) {
        EXPECT_EQ(h264::rewritePps(pps.nal, id, pps.spsId), pps.nal);
    }
    EXPECT_EQ(outputOrder(stream.pictures), stream.movie.shownOrder());
}

struct Kind {
    std::string name;
    NumberedMovie movie;

    friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

std::vector<Kind> kinds() {
    return {
        {"BaselineWithoutCabac", {.bFrames = 0, .profile = "baseline"}},
        {"Main", {.profile = "main", .encoderParams = "ref=4"}},
        {"OpenGroupsAndPyramids", {.openGop = true, .encoderParams = "b-pyramid=normal:bframes=7:b-adapt=0"}},
        {"WeightedPrediction", {.encoderParams = "weightp=2:weightb=1:ref=5"}},
        {"TenBits422", {.pixelFormat = "yuv422p10le", .profile = "high422"}},
        {"FourFourFour", {.pixelFormat = "yuv444p"}},
        {"InterlacedAdaptive", {.interlaced = true}},
        {"InterlacedWithoutCabac", {.interlaced = true, .encoderParams = "cabac=0"}},
        {"InterlacedInNameOnly", {.encoderParams = "fake-interlaced=1"}},
        {"FourSlices", {.encoderParams = "slices=4"}},
        {"IntraRefresh", {.encoderParams = "intra-refresh=1"}},
        {"Delimiters", {.encoderParams = "aud=1:nal-hrd=vbr:vbv-maxrate=2000:vbv-bufsize=2000"}},
        {"OwnMatrices", {.encoderParams = "cqm=jvt"}},
        {"AllIntra", {.gop = 1, .bFrames = 0}},
    };
}

class H264Streams : public testing::TestWithParam<Kind> {};

TEST_P(H264Streams, AreReadCorrectlyAndInOutputOrder) {
    const Stream stream(readCodedMovie(GetParam().movie));
    expectReadRight(stream);
    const auto output = test::bufferOutput(stream.sets, stream.record.nalLengthSize, stream.movie.samples);
    EXPECT_EQ(output.order, stream.movie.shownOrder());
    EXPECT_EQ(output.overflows, 0);
    EXPECT_EQ(output.frameNumGaps, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, H264Streams, testing::ValuesIn(kinds()),
                         [](const auto& kind) { return kind.param.name; });

TEST(H264Streams, OfRealCamerasAreReadCorrectly) {
    const auto files = test::sharedMoviesOf(test::MovieCodec::h264);
    if (files.empty()) {
        GTEST_SKIP() << "no shared movies";
    }
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename());
        EXPECT_NO_THROW(expectReadRight(Stream(test::readCodedMovie(file))));
    }
}

TEST(H264Facts, DescribeTheStream) {
    const Stream stream(readCodedMovie(NumberedMovie{.frames = 60, .gop = 30, .openGop = true}));
    EXPECT_TRUE(stream.pictures[0].idr);
    EXPECT_EQ(std::ranges::count(stream.pictures, true, &PictureFacts::idr), 1);
    EXPECT_EQ(
        std::ranges::count_if(stream.pictures, [](const auto& p) { return p.recoveryFrameCount == 0U; }), 1);
    EXPECT_TRUE(std::ranges::any_of(stream.pictures, [](const auto& p) { return !p.isReference; }));
    const Stream closed(readCodedMovie(NumberedMovie{.frames = 60, .gop = 30}));
    EXPECT_EQ(closed.pictures.back().period, 1);
    EXPECT_FALSE(closed.pictures[0].hasInBandParameterSets);
    EXPECT_TRUE(Stream(readCodedMovie(NumberedMovie{.frames = 10, .encoderParams = "aud=1"}))
                    .pictures[5]
                    .hasAccessUnitDelimiter);
}

TEST(H264FreezeFit, RequiresTheSourcesOwnCoding) {
    const Stream film(readCodedMovie(NumberedMovie{.width = 320, .height = 180, .frames = 10}));
    const auto& sps = film.sets.sps(0);
    const auto encoding = freezeEncodingFor(sps, film.sets.pps(0));
    ASSERT_TRUE(encoding.codedFrame);
    EXPECT_EQ(encoding.codedFrame->height, 192);
    EXPECT_EQ(encoding.codedFrame->cropBottom, 12);
    EXPECT_EQ(encoding.profileIdc, 100);
    EXPECT_EQ(encoding.levelIdc, sps.levelIdc);
    EXPECT_TRUE(encoding.cabac && encoding.transform8x8 && encoding.frameMbsOnly);
    // Level 1.3: 2000 units of 1250 bits.
    ASSERT_EQ(sps.levelIdc, 13);
    EXPECT_EQ(encoding.mostFirstBytes, 2000U * 1250 / 8 / 12);

    const Stream fields(readCodedMovie(NumberedMovie{.frames = 10, .interlaced = true, .profile = "main"}));
    const auto interlaced = freezeEncodingFor(fields.sets.sps(0), fields.sets.pps(0));
    EXPECT_FALSE(interlaced.frameMbsOnly);
    EXPECT_TRUE(interlaced.mbAdaptiveFields);
    EXPECT_FALSE(interlaced.transform8x8);

    h264::Sps odd = sps;
    odd.separateColourPlanes = true;
    EXPECT_THROW(freezeEncodingFor(odd, film.sets.pps(0)), bitstream::BitstreamError);
}

} // namespace
} // namespace zelvra
