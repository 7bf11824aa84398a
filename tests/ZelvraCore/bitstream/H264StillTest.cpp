// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/h264/PictureScanner.h"
#include "ZelvraCore/bitstream/h264/SmallNals.h"
#include "ZelvraCore/bitstream/h264/Still.h"
#include "tests/ZelvraCore/bitstream/CodedMovie.h"
#include "tests/ZelvraCore/bitstream/DecodedPictureBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelvra {
namespace {

using bitstream::Bytes;
using bitstream::ByteView;
using test::CodedMovie;
using test::NumberedMovie;

/// A source and a still of our own encoder in the same coding.
class Freeze {
public:
    explicit Freeze(const NumberedMovie& movie)
        : source(readCodedMovie(movie)),
          record(h264::AvcConfiguration::parse(source.configuration)),
          sets(record),
          clip(readCodedMovie(clipOf(movie))),
          ownRecord(h264::AvcConfiguration::parse(clip.configuration)),
          own(ownRecord) {
        h264::PictureScanner scanner(sets, record.nalLengthSize);
        for (const Bytes& sample : source.samples) {
            pictures.push_back(scanner.scan(sample));
        }
        ppsId = bitstream::lowestFreeId(scanner.ppsIdsSeen(), 256);
        const auto flat = sps().scalingMatrixPresent ? std::optional(sps().chroma) : std::nullopt;
        pps = h264::rewritePps(own.allPps().begin()->second.nal, ppsId, sps().id, flat);
    }

    const h264::Sps& sps() const { return sets.allSps().begin()->second; }

    std::vector<Bytes> parameterSets() const {
        std::vector<Bytes> nals = record.spsNals;
        nals.insert(nals.end(), record.ppsNals.begin(), record.ppsNals.end());
        nals.push_back(pps);
        return nals;
    }

    h264::ParameterSets allSets() const {
        h264::ParameterSets all = sets;
        all.add(pps);
        return all;
    }

    Bytes still(const h264::StillHeader& header) const {
        std::vector<Bytes> nals{h264::accessUnitDelimiter()};
        if (header.nalRefIdc > 0 && !header.idr) {
            nals.push_back(h264::recoveryPointSei(0));
        }
        for (const ByteView nal : bitstream::splitNalUnits(clip.samples[0], ownRecord.nalLengthSize)) {
            if (h264::nalType(nal) == h264::NalType::idrSlice) {
                nals.push_back(rewriteSlice(nal, own, sps(), header));
            }
        }
        return bitstream::joinNalUnits(nals, record.nalLengthSize);
    }

    /// A non-reference still, decoded after the sample `before` and shown right after the sample
    /// `shownBefore`.
    Bytes stillAfter(std::size_t before, std::size_t shownBefore) const {
        h264::PictureOrder order = pictures[before].orderAfter;
        const std::uint32_t frameNum = (order.previousReferenceFrameNum() + 1) % (1U << sps().frameNumBits);
        const std::int64_t poc = pictures[shownBefore].poc + 1;
        const std::int64_t lsb = poc & ((std::int64_t{1} << sps().pocLsbBits) - 1);
        h264::StillHeader header{
            .ppsId = ppsId, .frameNum = frameNum, .pocLsb = static_cast<std::uint32_t>(lsb)};
        EXPECT_EQ(order.next(sps(), header.asSlice()), poc);
        return still(header);
    }

    CodedMovie source;
    h264::AvcConfiguration record;
    h264::ParameterSets sets;
    CodedMovie clip;
    h264::AvcConfiguration ownRecord;
    h264::ParameterSets own;
    std::vector<h264::PictureFacts> pictures;
    int ppsId = 0;
    Bytes pps;

private:
    static NumberedMovie clipOf(NumberedMovie movie) {
        movie.frames = 1;
        if (movie.encoderParams.find("cqm") != std::string::npos) {
            movie.encoderParams.clear();
        }
        return movie;
    }
};

struct Kind {
    std::string name;
    NumberedMovie movie;

    friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

class H264Stills : public testing::TestWithParam<Kind> {};

/// Inserts freezes before pictures of every type. Checks their position in decode order. Checks that a
/// decoder outputs every picture of the source unchanged, and the still in its place.
TEST_P(H264Stills, AreInsertedBetweenUnchangedPictures) {
    const Freeze freeze(GetParam().movie);
    const CodedMovie& source = freeze.source;
    const auto shown = source.shownOrder();
    const auto original = test::decodedPictures("h264", freeze.parameterSets(), source.samples);
    const auto ownSets = std::vector{freeze.ownRecord.spsNals[0], freeze.ownRecord.ppsNals[0]};
    const auto stillPicture = test::decodedPictures("h264", ownSets, freeze.clip.samples);
    ASSERT_EQ(original.size(), shown.size());
    ASSERT_EQ(stillPicture.size(), 1U);

    std::vector<Bytes> samples = source.samples;
    std::vector<std::string> expected = original;
    std::vector<std::size_t> expectedOrder = shown;
    for (const std::size_t frame : {std::size_t{27}, std::size_t{26}, std::size_t{25}, std::size_t{9}}) {
        std::size_t before = 0;
        for (std::size_t i = 0; i < source.samples.size(); ++i) {
            if (source.presentation[i] < source.presentation[shown[frame]]) {
                before = i;
            }
        }
        const Bytes still = freeze.stillAfter(before, shown[frame - 1]);
        samples.insert(samples.begin() + static_cast<std::ptrdiff_t>(before) + 1, still);
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(frame), stillPicture[0]);
        for (std::size_t& index : expectedOrder) {
            index += index > before ? 1 : 0;
        }
        expectedOrder.insert(expectedOrder.begin() + static_cast<std::ptrdiff_t>(frame), before + 1);
    }
    EXPECT_EQ(test::decodedPictures("h264", freeze.parameterSets(), samples), expected);
    const auto output = test::bufferOutput(freeze.allSets(), freeze.record.nalLengthSize, samples);
    EXPECT_EQ(output.order, expectedOrder);
    EXPECT_EQ(output.overflows, 0);
    EXPECT_EQ(output.frameNumGaps, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, H264Stills,
    testing::Values(Kind{"High", {}}, Kind{"BaselineWithoutCabac", {.bFrames = 0, .profile = "baseline"}},
                    Kind{"MainWithoutCabac", {.profile = "main", .encoderParams = "cabac=0"}},
                    Kind{"OpenGroups", {.openGop = true, .encoderParams = "b-pyramid=normal:bframes=7"}},
                    Kind{"TenBits422", {.pixelFormat = "yuv422p10le", .profile = "high422"}},
                    Kind{"InterlacedAdaptive", {.interlaced = true}},
                    Kind{"InterlacedInNameOnly", {.encoderParams = "fake-interlaced=1:cabac=0"}},
                    Kind{"FourSlices", {.encoderParams = "slices=4"}},
                    Kind{"OwnMatrices", {.encoderParams = "cqm=jvt"}}),
    [](const auto& kind) { return kind.param.name; });

TEST(H264Stills, BeforeAnIdrPictureAreIdrPicturesWithAnotherId) {
    for (const bool interlaced : {false, true}) {
        const Freeze freeze(NumberedMovie{.frames = 20, .interlaced = interlaced});
        const h264::StillHeader header{
            .idr = true, .nalRefIdc = 3, .ppsId = freeze.ppsId, .idrPicId = freeze.pictures[0].idrPicId + 1};
        std::vector<Bytes> samples = freeze.source.samples;
        samples.insert(samples.begin(), freeze.still(header));
        const auto original = test::decodedPictures("h264", freeze.parameterSets(), freeze.source.samples);
        const auto decoded = test::decodedPictures("h264", freeze.parameterSets(), samples);
        ASSERT_EQ(decoded.size(), original.size() + 1);
        EXPECT_TRUE(std::equal(original.begin(), original.end(), decoded.begin() + 1));
    }
}

TEST(H264Stills, CanStartAStreamAtARecoveryPoint) {
    const Freeze freeze(NumberedMovie{.frames = 60, .gop = 30, .openGop = true});
    const auto head = static_cast<std::size_t>(
        std::ranges::find_if(freeze.pictures.begin() + 1, freeze.pictures.end(),
                             [](const auto& each) { return each.recoveryFrameCount.has_value(); }) -
        freeze.pictures.begin());
    ASSERT_LT(head, freeze.pictures.size());
    const auto& facts = freeze.pictures[head];
    const h264::StillHeader lead{.nalRefIdc = 1,
                                 .ppsId = freeze.ppsId,
                                 .frameNum = (facts.frameNum - 1) % (1U << freeze.sps().frameNumBits),
                                 .pocLsb = (facts.pocLsb - 2) % (1U << freeze.sps().pocLsbBits)};
    std::vector<Bytes> samples{freeze.still(lead)};
    // Pictures shown before the head refer to missing pictures.
    for (std::size_t i = head; i < freeze.source.samples.size(); ++i) {
        if (freeze.source.presentation[i] >= freeze.source.presentation[head]) {
            samples.push_back(freeze.source.samples[i]);
        }
    }
    const auto original = test::decodedPictures("h264", freeze.parameterSets(), freeze.source.samples);
    const auto decoded = test::decodedPictures("h264", freeze.parameterSets(), samples);
    ASSERT_EQ(decoded.size(), samples.size());
    EXPECT_TRUE(std::equal(decoded.begin() + 1, decoded.end(), original.end() + 1 - std::ssize(decoded)));
}

TEST(H264Stills, AreRefusedIfTheStreamsDiffer) {
    const Freeze freeze(NumberedMovie{.frames = 2});
    const h264::StillHeader header{.ppsId = freeze.ppsId};
    const ByteView slice = bitstream::splitNalUnits(freeze.clip.samples[0], 4).back();
    h264::Sps larger = freeze.sps();
    larger.widthInMacroblocks += 1;
    EXPECT_THROW(rewriteSlice(slice, freeze.own, larger, header), bitstream::BitstreamError);
    h264::Sps baseline = freeze.sps();
    baseline.profileIdc = 66;
    EXPECT_THROW(rewriteSlice(slice, freeze.own, baseline, header), bitstream::BitstreamError);
    const ByteView inter = bitstream::splitNalUnits(freeze.source.samples[1], 4).back();
    EXPECT_THROW(rewriteSlice(inter, freeze.sets, freeze.sps(), header), bitstream::BitstreamError);
}

/// No encoder here writes order counts of type 1, so the numbers are calculated by hand from clause 8.2.1.2.
TEST(H264PictureOrder, OfTypeOneFollowsTheCycleOfOffsets) {
    h264::Sps sps;
    sps.pocType = 1;
    sps.offsetForNonRefPic = -2;
    sps.offsetForTopToBottomField = 1;
    sps.offsetsForRefFrame = {2, 6};
    h264::PictureOrder order;
    const auto next = [&](std::uint32_t frameNum, bool reference, bool idr = false) {
        h264::SliceHeader slice;
        slice.frameNum = frameNum;
        slice.nalRefIdc = reference ? 1 : 0;
        slice.idr = idr;
        return order.next(sps, slice);
    };
    EXPECT_EQ(next(0, true, true), 0);
    EXPECT_EQ(next(1, true), 2);
    EXPECT_EQ(next(2, true), 8);
    EXPECT_EQ(next(3, false), 6);
    EXPECT_EQ(next(3, true), 10);
    for (std::uint32_t i = 4; i < 16; ++i) {
        next(i, true);
    }
    EXPECT_EQ(next(0, true), 64) << "frame_num starts again after 16";
}

TEST(H264PictureOrder, RestartsAfterAMemoryReset) {
    for (const int type : {0, 2}) {
        h264::Sps sps;
        sps.pocType = type;
        h264::PictureOrder order;
        h264::SliceHeader slice{.idr = true, .nalRefIdc = 1};
        order.next(sps, slice);
        slice = {.nalRefIdc = 1, .frameNum = 1, .pocLsb = 2};
        EXPECT_EQ(order.next(sps, slice), 2);
        slice = {.nalRefIdc = 1, .frameNum = 2, .pocLsb = 4, .memoryOperations = {{5, 0, 0}}};
        EXPECT_EQ(order.next(sps, slice), 0);
        EXPECT_EQ(order.previousReferenceFrameNum(), 0U);
        slice = {.nalRefIdc = 1, .frameNum = 1, .pocLsb = 2};
        EXPECT_EQ(order.next(sps, slice), 2);
    }
}

TEST(H264ScalingLists, OfAStillAreFlatIfTheSourceHasMatrices) {
    const Freeze freeze(NumberedMovie{.frames = 2});
    const Bytes& own = freeze.own.allPps().begin()->second.nal;
    for (const ChromaFormat chroma : {ChromaFormat::yuv420, ChromaFormat::yuv444}) {
        const Bytes flat = h264::rewritePps(own, 200, 3, chroma);
        const h264::Pps pps = h264::parsePps(flat, chroma);
        EXPECT_EQ(pps.id, 200);
        EXPECT_EQ(pps.spsId, 3);
        EXPECT_TRUE(pps.scalingMatrixPresent && pps.transform8x8 && pps.cabac);
        EXPECT_EQ(pps.secondChromaQpOffset, h264::parsePps(own).secondChromaQpOffset);
        EXPECT_THROW(h264::rewritePps(flat, 1, 0, chroma), bitstream::BitstreamError);
    }
    // Explicit flat lists mean the same as no lists, so the clip must decode to the same pictures.
    const auto& record = freeze.ownRecord;
    const auto plain = test::decodedPictures("h264", {record.spsNals[0], own}, freeze.clip.samples);
    const Bytes flat = h264::rewritePps(own, 0, 0, ChromaFormat::yuv420);
    EXPECT_EQ(test::decodedPictures("h264", {record.spsNals[0], flat}, freeze.clip.samples), plain);
}

} // namespace
} // namespace zelvra
