// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/MovieIndex.h"

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/records/MediaError.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zelvra::passthrough {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// `count` samples of `bytes` each, `ticks` apart at `timescale`, the first of every ten a sync sample.
OutputTrack trackOf(OutputTrack::Kind kind, std::size_t count, std::uint32_t bytes, std::int64_t ticks,
                    std::uint32_t timescale) {
    OutputTrack track;
    track.kind = kind;
    track.timescale = timescale;
    const bool isVideo = kind == OutputTrack::Kind::video;
    track.sampleEntry = isobmff::makeBox(isVideo ? fourCharCode("avc1") : fourCharCode("mp4a"), Bytes(78));
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t offset = isVideo ? static_cast<std::uint32_t>(ticks * (i % 2 == 0 ? 1 : 3)) : 0;
        track.samples.push_back({{Store::source, bytes, i * bytes},
                                 static_cast<std::int64_t>(i) * ticks,
                                 offset,
                                 !isVideo || i % 10 == 0});
    }
    track.mediaDuration = static_cast<std::int64_t>(count) * ticks + 1; // the last one is longer
    track.editDuration = track.mediaDuration;
    return track;
}

OutputMovie movieOf(std::size_t pictures, std::uint32_t bytes) {
    OutputMovie movie;
    movie.tracks.push_back(trackOf(OutputTrack::Kind::video, pictures, bytes, 512, 15360));
    movie.tracks.push_back(trackOf(OutputTrack::Kind::sound, pictures * 3 / 2, 300, 1024, 48000));
    return movie;
}

/// A file of which only the index exists: its media reads as zeros, whatever its size.
class IndexOnly final : public files::ByteSource {
public:
    IndexOnly(Bytes index, std::uint64_t mediaBytes)
        : index_(std::move(index)), size_(index_.size() + mediaBytes) {}
    std::uint64_t size() const override { return size_; }
    void read(std::uint64_t offset, std::span<std::uint8_t> bytes) const override {
        for (std::uint8_t& byte : bytes) {
            byte = offset < index_.size() ? index_[offset] : 0;
            ++offset;
        }
    }
    std::string name() const override { return "index"; }

private:
    Bytes index_;
    std::uint64_t size_;
};

struct Written {
    Bytes index;
    std::vector<OutputChunk> chunks;
    isobmff::Movie movie;
};

Written written(const OutputMovie& plan) {
    Written result;
    result.chunks = layOutChunks(plan);
    result.index = buildMovieIndex(plan, result.chunks);
    const OutputChunk& last = result.chunks.back();
    result.movie = isobmff::readMovie(IndexOnly(result.index, last.offset + last.bytes));
    return result;
}

/// Expects the plan's samples, at the offsets that the chunks give them.
void expectPlanned(const Written& result, const OutputMovie& plan) {
    for (const OutputChunk& chunk : result.chunks) {
        const OutputTrack& planned = plan.tracks[chunk.track];
        const isobmff::Track& track = result.movie.tracks.at(chunk.track);
        std::uint64_t offset = result.index.size() + chunk.offset;
        for (std::size_t i = chunk.firstSample; i < chunk.firstSample + chunk.samples; ++i) {
            const isobmff::Sample& sample = track.samples.at(i);
            EXPECT_EQ(sample.offset, offset);
            EXPECT_EQ(sample.size, planned.samples[i].bytes.size);
            EXPECT_EQ(sample.decodeTime, planned.samples[i].decodeTime);
            EXPECT_EQ(sample.compositionOffset,
                      static_cast<std::int32_t>(planned.samples[i].compositionOffset));
            EXPECT_EQ(sample.sync, planned.samples[i].sync);
            offset += sample.size;
        }
    }
    for (std::size_t i = 0; i < plan.tracks.size(); ++i) {
        const isobmff::Track& track = result.movie.tracks.at(i);
        EXPECT_EQ(track.mediaDuration, static_cast<std::uint64_t>(plan.tracks[i].mediaDuration));
        ASSERT_EQ(track.edits.size(), 1u);
        EXPECT_EQ(track.edits[0].mediaTime, plan.tracks[i].editStart);
        EXPECT_EQ(track.sampleEntries.at(0).box, plan.tracks[i].sampleEntry);
    }
}

bool holds(const Bytes& index, FourCharCode type) {
    const std::string text(index.begin(), index.end());
    return text.find(fourCharString(type)) != std::string::npos;
}

TEST(ChunkLayout, KeepsASourcesOwnOrderOfSoundAndPicture) {
    OutputMovie plan = movieOf(6, 1000); // nine packets of sound, in the source after every second picture
    for (std::size_t i = 0; i < 9; ++i) {
        plan.tracks[1].samples[i].bytes.offset = (i / 3 + 1) * 2000 + i * 300;
    }
    for (std::size_t i = 0; i < 6; ++i) {
        plan.tracks[0].samples[i].bytes.offset = i * 1000 + i / 2 * 900;
    }
    const std::vector<OutputChunk> chunks = layOutChunks(plan);
    ASSERT_EQ(chunks.size(), 6u);
    EXPECT_EQ(chunks[0], (OutputChunk{0, 0, 2, 0, 2000}));
    EXPECT_EQ(chunks[1], (OutputChunk{1, 0, 3, 2000, 900}));
    EXPECT_EQ(chunks[5], (OutputChunk{1, 6, 3, 7800, 900}));
}

TEST(ChunkLayout, LetsNoTrackGetFarAheadAndNoChunkGrowLong) {
    const OutputMovie plan = movieOf(300, 1000); // the samples of each track are together in its store
    std::vector<double> reached(2);
    std::size_t dealt = 0;
    for (const OutputChunk& chunk : layOutChunks(plan)) {
        const OutputTrack& track = plan.tracks[chunk.track];
        const auto seconds = [&track](std::size_t sample) {
            return static_cast<double>(track.samples[sample].decodeTime) / track.timescale;
        };
        EXPECT_LE(seconds(chunk.firstSample + chunk.samples - 1) - seconds(chunk.firstSample), 0.5);
        reached[chunk.track] = seconds(chunk.firstSample + chunk.samples - 1);
        if (dealt += chunk.samples; dealt < 700) {
            EXPECT_LE(std::abs(reached[0] - reached[1]), 0.6);
        }
    }
    EXPECT_EQ(dealt, 750u);
}

TEST(MovieIndex, SaysWhatThePlanSays) {
    for (const auto container :
         {MovieContainer::mpeg4, MovieContainer::appleM4v, MovieContainer::quickTime}) {
        OutputMovie plan = movieOf(100, 1000);
        plan.container = container;
        plan.tracks[0].editStart = 512;
        expectPlanned(written(plan), plan);
    }
}

TEST(MovieIndex, NamesBrandsAndHandlersAsItsContainerAsks) {
    using Brands = std::vector<FourCharCode>;
    OutputMovie plan = movieOf(2, 10);
    plan.compatibleBrands = {fourCharCode("dby1")};
    EXPECT_EQ(written(plan).movie.majorBrand, fourCharCode("isom"));
    EXPECT_EQ(written(plan).movie.compatibleBrands,
              (Brands{fourCharCode("isom"), fourCharCode("iso2"), fourCharCode("mp41"), fourCharCode("avc1"),
                      fourCharCode("dby1")}));
    EXPECT_FALSE(holds(written(plan).index, fourCharCode("mhlr")));
    plan.container = MovieContainer::appleM4v;
    EXPECT_EQ(written(plan).movie.majorBrand, fourCharCode("M4V "));
    plan.container = MovieContainer::quickTime;
    EXPECT_TRUE(written(plan).movie.isQuickTime());
    EXPECT_TRUE(holds(written(plan).index, fourCharCode("mhlr")));
    EXPECT_TRUE(holds(written(plan).index, fourCharCode("dhlr")));
}

TEST(MovieIndex, UsesLongOffsetsOnlyWhereTheLastChunkNeedsThem) {
    constexpr std::uint32_t largePicture = 1u << 30;
    struct Case {
        std::size_t pictures;
        bool longOffsets;
    };
    for (const Case& test : {Case{4, false}, Case{5, true}}) { // a picture a chunk
        OutputMovie plan;
        plan.tracks.push_back(trackOf(OutputTrack::Kind::video, test.pictures, largePicture, 600, 600));
        const Written result = written(plan);
        EXPECT_EQ(holds(result.index, fourCharCode("co64")), test.longOffsets);
        EXPECT_EQ(holds(result.index, fourCharCode("stco")), !test.longOffsets);
        expectPlanned(result, plan);
    }
}

TEST(MovieIndex, HoldsTimesAndDatesBeyond32Bits) {
    OutputMovie plan;
    plan.tracks.push_back(trackOf(OutputTrack::Kind::video, 3, 10, std::int64_t{3} << 30, 1000000000));
    plan.creationTime = plan.tracks[0].creationTime = std::uint64_t{1} << 33;
    plan.tracks[0].editStart = std::int64_t{1} << 31;
    const Written result = written(plan);
    expectPlanned(result, plan);
    EXPECT_EQ(result.movie.creationTime, plan.creationTime);
    EXPECT_EQ(result.movie.tracks[0].edits[0].duration, std::uint64_t{3} * 3 * (1u << 30) + 1);
    plan.tracks[0].samples[1].decodeTime = std::int64_t{1} << 33;
    plan.tracks[0].samples[2].decodeTime = std::int64_t{1} << 34;
    EXPECT_THROW(written(plan), MediaError);
}

TEST(MovieIndex, CountsTheMovieInTicksOfEveryTrack) {
    OutputMovie plan = movieOf(2, 10);
    EXPECT_EQ(movieTimescale(plan), 384000u); // of 15360 and 48000
    EXPECT_EQ(written(plan).movie.tracks[0].edits[0].duration, 1025u * 384000 / 15360);
    plan.tracks[0].timescale = 0x7FFFFFFF;
    EXPECT_EQ(movieTimescale(plan), 0x7FFFFFFFu);
}

TEST(MovieIndex, ListsPcmByItsSizeAlone) {
    OutputMovie plan = movieOf(100, 10);
    OutputTrack& sound = plan.tracks[1];
    sound.uniform = {4, 1};
    for (OutputSample& sample : sound.samples) {
        sample.bytes.size = 4096; // 1024 moments each
    }
    sound.mediaDuration -= 1;
    const Written result = written(plan);
    EXPECT_EQ(result.movie.tracks[1].uniform, sound.uniform);
    EXPECT_EQ(result.movie.tracks[1].mediaDuration, 150u * 1024);
    EXPECT_LT(result.index.size(), 3000u);
}

TEST(MovieIndex, MarksTheWarmUpOfACodec) {
    OutputMovie plan = movieOf(10, 10);
    EXPECT_FALSE(holds(written(plan).index, fourCharCode("roll")));
    plan.tracks[1].rollDistance = -1;
    const Bytes index = written(plan).index;
    EXPECT_TRUE(holds(index, fourCharCode("sgpd")) && holds(index, fourCharCode("sbgp")));
}

} // namespace
} // namespace zelvra::passthrough
