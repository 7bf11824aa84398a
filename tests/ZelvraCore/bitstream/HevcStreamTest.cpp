// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/SeiMessages.h"
#include "ZelvraCore/bitstream/hevc/CarriedMetadata.h"
#include "ZelvraCore/bitstream/hevc/FreezeFit.h"
#include "ZelvraCore/bitstream/hevc/Hiding.h"
#include "ZelvraCore/bitstream/hevc/Identity.h"
#include "ZelvraCore/bitstream/hevc/PictureScanner.h"
#include "tests/ZelvraCore/bitstream/CodedMovie.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zelvra {
namespace {

using bitstream::Bytes;
using bitstream::ByteView;
using hevc::NalType;
using hevc::PictureFacts;
using test::CodedMovie;
using test::MovieCodec;
using test::NumberedMovie;

struct Stream {
    explicit Stream(CodedMovie coded)
        : movie(std::move(coded)),
          record(hevc::HevcConfiguration::parse(movie.configuration)),
          sets(record),
          scanner(sets, record.nalLengthSize()) {
        for (const Bytes& sample : movie.samples) {
            pictures.push_back(scanner.scan(sample));
        }
        twins = hevc::chooseTwinIds(scanner.ppsIdsSeen(), {});
    }

    std::vector<Bytes> parameterSets() const { return parameterSetsOf(record); }

    static std::vector<Bytes> parameterSetsOf(const hevc::HevcConfiguration& record) {
        std::vector<Bytes> nals;
        for (const auto& array : record.arrays) {
            nals.insert(nals.end(), array.nals.begin(), array.nals.end());
        }
        return nals;
    }

    std::vector<Bytes> parameterSetsAndTwins() const {
        auto nals = parameterSets();
        const auto twinNals = twinsOf(sets, twins);
        nals.insert(nals.end(), twinNals.begin(), twinNals.end());
        return nals;
    }

    std::vector<std::string> decoded() const {
        return test::decodedPictures("hevc", parameterSets(), movie.samples, record.nalLengthSize());
    }

    CodedMovie movie;
    hevc::HevcConfiguration record;
    hevc::ParameterSets sets;
    hevc::PictureScanner scanner;
    std::vector<PictureFacts> pictures;
    hevc::TwinIds twins;
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

void expectReadRight(const Stream& stream) {
    hevc::ParameterSets sets = stream.sets;
    for (const Bytes& sample : stream.movie.samples) {
        for (const ByteView nal : bitstream::splitNalUnits(sample, stream.record.nalLengthSize())) {
            sets.add(nal);
            if (!hevc::isSlice(hevc::nalType(nal))) {
                continue;
            }
            const auto header = parseSliceHeader(nal, sets); // checks that slice data begins at the end of
                                                             // the header
            EXPECT_EQ(rewriteSlice(nal, header, {}), Bytes(nal.begin(), nal.end()));
        }
    }
}

/// Hides pictures 20 to 29 and every fourth of the others. The decoder must output the rest unchanged.
void expectHiddenOnly(const Stream& stream) {
    const auto shown = outputOrder(stream.pictures);
    const auto original = stream.decoded();
    ASSERT_EQ(original.size(), shown.size());
    std::vector<std::string> expected;
    std::set<std::size_t> hidden;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (i % 4 == 3 || (i >= 20 && i < 30)) {
            hidden.insert(shown[i]);
        } else {
            expected.push_back(original[i]);
        }
    }
    hevc::ParameterSets sets = stream.sets;
    const int lengthSize = stream.record.nalLengthSize();
    std::vector<Bytes> samples;
    for (std::size_t i = 0; i < stream.movie.samples.size(); ++i) {
        const Bytes& sample = stream.movie.samples[i];
        samples.push_back(
            hidden.contains(i)
                ? hideSample(sample, lengthSize, sets, stream.twins, false)
                : completeSample(sample, lengthSize, sets, stream.twins, false).value_or(sample));
    }
    EXPECT_EQ(test::decodedPictures("hevc", stream.parameterSetsAndTwins(), samples, lengthSize), expected);
    for (const Bytes& nal : stream.parameterSetsAndTwins()) {
        sets.add(nal);
    }
    hevc::PictureScanner again(sets, lengthSize);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const PictureFacts facts = again.scan(samples[i]);
        EXPECT_EQ(facts.output, !hidden.contains(i));
        EXPECT_EQ(facts.poc, stream.pictures[i].poc);
    }
}

struct Kind {
    std::string name;
    NumberedMovie movie;

    friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

std::vector<Kind> kinds() {
    constexpr auto hevc = MovieCodec::hevc;
    return {
        {"Closed", {.codec = hevc}},
        {"OpenGroups", {.codec = hevc, .openGop = true}},
        {"TenBits", {.codec = hevc, .pixelFormat = "yuv420p10le"}},
        {"FourTwoTwoTenBits", {.codec = hevc, .pixelFormat = "yuv422p10le"}},
        {"FourFourFour", {.codec = hevc, .pixelFormat = "yuv444p"}},
        {"SlicesAndWavefronts",
         {.width = 640, .height = 384, .codec = hevc, .encoderParams = "slices=3:wpp=1"}},
        {"WithoutWavefronts", {.codec = hevc, .encoderParams = "wpp=0:sao=0:deblock=-2,-2"}},
        {"WithoutDeblocking", {.codec = hevc, .encoderParams = "deblock=0:cbqpoffs=3:crqpoffs=-3:amp=0"}},
        {"TemporalLayers", {.codec = hevc, .encoderParams = "temporal-layers=1:b-pyramid=1"}},
        {"WeightedPrediction", {.codec = hevc, .encoderParams = "weightp=1:weightb=1:ref=5"}},
        {"SetsInSamples", {.codec = hevc, .encoderParams = "repeat-headers=1:aud=1", .sampleEntry = "hev1"}},
        {"ScalingLists",
         {.codec = hevc, .encoderParams = "scaling-list=default:hrd=1:vbv-maxrate=2000:vbv-bufsize=2000"}},
        {"OneReference", {.codec = hevc, .bFrames = 0, .encoderParams = "ref=1"}},
    };
}

class HevcStreams : public testing::TestWithParam<Kind> {};

TEST_P(HevcStreams, AreReadCorrectlyAndOutputAllButTheHiddenPictures) {
    const Stream stream(readCodedMovie(GetParam().movie));
    expectReadRight(stream);
    EXPECT_EQ(outputOrder(stream.pictures), stream.movie.shownOrder());
    expectHiddenOnly(stream);
}

INSTANTIATE_TEST_SUITE_P(Kinds, HevcStreams, testing::ValuesIn(kinds()),
                         [](const auto& kind) { return kind.param.name; });

TEST(HevcStreams, OfRealCamerasAreReadCorrectlyAndHidden) {
    const auto files = test::sharedMoviesOf(MovieCodec::hevc);
    if (files.empty()) {
        GTEST_SKIP() << "no shared movies";
    }
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename());
        CodedMovie movie = test::readCodedMovie(file);
        const Stream whole(movie);
        expectReadRight(whole);
        // The camera of one of them gave a few pictures times that are not in output order.
        if (!file.filename().string().starts_with("phone-29")) {
            EXPECT_EQ(outputOrder(whole.pictures), movie.shownOrder());
        }
        movie.samples.resize(std::min<std::size_t>(movie.samples.size(), 60));
        expectHiddenOnly(Stream(std::move(movie)));
    }
}

TEST(HevcFacts, DistinguishLeadingPicturesFromOthers) {
    const Stream stream(
        readCodedMovie(NumberedMovie{.frames = 90, .codec = MovieCodec::hevc, .gop = 30, .openGop = true}));
    const auto cra = std::ranges::find(stream.pictures, NalType::cra, &PictureFacts::nalType);
    ASSERT_NE(cra, stream.pictures.end());
    EXPECT_FALSE(cra->startsSequence);
    EXPECT_TRUE(std::ranges::any_of(stream.pictures, &PictureFacts::leading));
    for (const PictureFacts& facts : stream.pictures) {
        EXPECT_TRUE(facts.output);
    }

    // If reading starts at that CRA picture, its leading pictures cannot be decoded and are not output. Order
    // counts continue from its own.
    hevc::PictureScanner scanner(stream.sets, stream.record.nalLengthSize());
    const auto at = static_cast<std::size_t>(cra - stream.pictures.begin());
    EXPECT_TRUE(scanner.scan(stream.movie.samples[at]).startsSequence);
    for (std::size_t i = at + 1; i < stream.pictures.size(); ++i) {
        const PictureFacts facts = scanner.scan(stream.movie.samples[i]);
        if (i < at + 10) {
            EXPECT_EQ(facts.output, !hevc::isRasl(facts.nalType));
        }
        EXPECT_EQ(facts.poc - stream.pictures[i].poc,
                  scanner.parameterSets().sps(0).pocLsbBits >= 8 ? 0 : facts.poc);
    }
}

TEST(HevcHiding, LetsARunStartAtAPictureOfAnOpenGroup) {
    const Stream stream(
        readCodedMovie(NumberedMovie{.frames = 90, .codec = MovieCodec::hevc, .gop = 30, .openGop = true}));
    const auto original = stream.decoded();
    const auto head = static_cast<std::size_t>(
        std::ranges::find(stream.pictures, NalType::cra, &PictureFacts::nalType) - stream.pictures.begin());
    const auto& times = stream.movie.presentation;
    // The whole movie, then a second time from the CRA picture on without its leading pictures.
    hevc::ParameterSets sets = stream.sets;
    std::vector<Bytes> samples = stream.movie.samples;
    std::size_t run = 0;
    for (std::size_t i = head; i < times.size(); ++i) {
        if (times[i] < times[head]) {
            continue;
        }
        ++run;
        if (i == head) {
            samples.push_back(*completeSample(stream.movie.samples[i], 4, sets, stream.twins, true));
        } else {
            samples.push_back(stream.movie.samples[i]);
        }
    }
    auto expected = original;
    expected.insert(expected.end(), original.end() - static_cast<std::ptrdiff_t>(run), original.end());
    EXPECT_EQ(test::decodedPictures("hevc", stream.parameterSetsAndTwins(), samples), expected);

    const Bytes hidden = hideSample(stream.movie.samples[head], 4, sets, stream.twins, true);
    hevc::ParameterSets withTwins = stream.sets;
    for (const Bytes& nal : stream.parameterSetsAndTwins()) {
        withTwins.add(nal);
    }
    hevc::PictureScanner scanner(withTwins, 4);
    const PictureFacts facts = scanner.scan(hidden);
    EXPECT_EQ(facts.nalType, NalType::blaNLp);
    EXPECT_FALSE(facts.output);
}

TEST(HevcIdentity, LetsAClipWithTheSameIdsJoinTheStream) {
    for (const std::string pixels : {"yuv420p", "yuv420p10le"}) {
        const Stream source(readCodedMovie(
            NumberedMovie{.frames = 40, .codec = MovieCodec::hevc, .gop = 20, .pixelFormat = pixels}));
        const Stream clip(readCodedMovie(NumberedMovie{.frames = 12,
                                                       .codec = MovieCodec::hevc,
                                                       .bFrames = 0,
                                                       .pixelFormat = pixels,
                                                       .encoderParams = "ref=1"}));
        const hevc::Identity identity{
            .vpsId = bitstream::lowestFreeId(source.scanner.vpsIdsSeen(), 16), .spsId = 15, .ppsId = 40};
        const hevc::Sps& sourceSps = source.sets.sps(0);
        const auto renamed = reidentify(clip.record, identity, sourceSps);
        const hevc::ParameterSets renamedSets(renamed);
        const hevc::Sps& sps = renamedSets.sps(15);
        EXPECT_EQ(sps.vpsId, identity.vpsId);
        EXPECT_EQ(renamedSets.pps(40).spsId, 15);
        EXPECT_EQ(sps.ordering.back().maxDecPicBuffering, sourceSps.ordering.back().maxDecPicBuffering);
        EXPECT_EQ(sps.ordering.back().maxNumReorder, sourceSps.ordering.back().maxNumReorder);
        EXPECT_GE(sps.profileTierLevel.levelIdc, sourceSps.profileTierLevel.levelIdc);

        std::vector<Bytes> samples(source.movie.samples.begin(), source.movie.samples.begin() + 20);
        for (const Bytes& sample : clip.movie.samples) {
            samples.push_back(reidentifySample(sample, 4, clip.sets, identity));
        }
        samples.insert(samples.end(), source.movie.samples.begin() + 20, source.movie.samples.end());
        const auto merged = mergeForSplice(source.record, renamed, twinsOf(source.sets, source.twins));
        auto expected = source.decoded();
        const auto inserted = clip.decoded();
        expected.insert(expected.begin() + 20, inserted.begin(), inserted.end());
        EXPECT_EQ(test::decodedPictures("hevc", Stream::parameterSetsOf(merged), samples), expected);
    }
}

TEST(HevcMetadata, OfAPictureIsCarriedWithIt) {
    const auto movie = test::sharedMovie("phone-17-rotated_hdr_video.mov");
    if (!movie) {
        GTEST_SKIP() << "no shared movies";
    }
    const Stream phone(test::readCodedMovie(*movie));
    const auto carried = hevc::carriedMetadata(phone.movie.samples[0], phone.record.nalLengthSize());
    ASSERT_FALSE(carried.empty()) << "Dolby Vision";
    const Stream plain(readCodedMovie(NumberedMovie{.frames = 10, .codec = MovieCodec::hevc}));
    EXPECT_TRUE(hevc::carriedMetadata(plain.movie.samples[0], 4).empty());
    const auto once = hevc::carriedMetadata(hevc::withMetadata(plain.movie.samples[0], 4, carried), 4);
    EXPECT_EQ(once.beforeSlices, carried.beforeSlices);
    EXPECT_EQ(once.afterSlices, carried.afterSlices);
}

TEST(HevcMetadata, LeavesOutMessagesOfOtherKindsThatShareANalUnit) {
    const Bytes header{0x4E, 0x01};
    const Bytes colours(300, 0);
    const Bytes mixed = bitstream::writeSei(header, {{1, {7}}, {4, colours}, {132, {1, 2}}});
    const Bytes alone = bitstream::writeSei(header, {{4, colours}});
    const Bytes slice{0x02, 0x01, 0x80};
    const Bytes sample = bitstream::joinNalUnits(std::vector{mixed, slice}, 4);
    EXPECT_EQ(hevc::carriedMetadata(sample, 4).beforeSlices, (std::vector<Bytes>{alone}));
}

TEST(HevcFreezeFit, RequiresTheSourcesOwnCoding) {
    const Stream film(readCodedMovie(NumberedMovie{
        .width = 322, .height = 182, .frames = 10, .codec = MovieCodec::hevc, .pixelFormat = "yuv422p10le"}));
    const auto encoding = freezeEncodingFor(film.sets.sps(0));
    ASSERT_TRUE(encoding.codedFrame);
    EXPECT_EQ(encoding.codedFrame->width - encoding.codedFrame->cropRight, 322);
    EXPECT_EQ(encoding.codedFrame->height - encoding.codedFrame->cropBottom, 182);
    EXPECT_EQ(encoding.bitDepth, 10);
    EXPECT_EQ(encoding.chroma, ChromaFormat::yuv422);
}

} // namespace
} // namespace zelvra
