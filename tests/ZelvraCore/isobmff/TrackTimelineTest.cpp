// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/TrackTimeline.h"

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/BoxTree.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"

#include <gtest/gtest.h>

#include <map>

namespace zelvra::isobmff {
namespace {

constexpr std::uint32_t movieTimescale = 1000;

/// Pictures of 100 ticks at 1000 ticks a second, repeating the decode order I0 P3 B1 B2.
Track reorderedTrack(std::size_t pictures) {
    Track track;
    track.handler = videoHandler;
    track.timescale = 1000;
    for (std::size_t i = 0; i < pictures; ++i) {
        static constexpr std::array<int, 4> offsets{100, 300, 0, 0};
        Sample sample;
        sample.decodeTime = static_cast<std::int64_t>(i) * 100;
        sample.duration = 100;
        sample.compositionOffset = offsets[i % offsets.size()];
        sample.sync = i % 4 == 0;
        track.samples.push_back(sample);
    }
    track.indexedSamples = pictures;
    return track;
}

TrackTimeline timeline(Track track, std::vector<Edit> edits) {
    track.edits = std::move(edits);
    return {track, movieTimescale};
}

std::vector<std::int64_t> starts(const TrackTimeline& timeline) {
    std::vector<std::int64_t> times;
    for (const ShownSample& sample : timeline.shown()) {
        times.push_back(sample.start);
    }
    return times;
}

TEST(TrackTimeline, ShowsTheMediaAsItIsWithoutEdits) {
    const TrackTimeline whole = timeline(reorderedTrack(4), {});
    EXPECT_EQ(starts(whole), (std::vector<std::int64_t>{100, 200, 300, 400}));
    EXPECT_EQ(whole.pieces(), (std::vector<ShownPiece>{{100, 400, 100}}));
    EXPECT_EQ(whole.shown()[1].sample, 2u);
}

TEST(TrackTimeline, StartsAtTheEditAfterAnEmptyOne) {
    const TrackTimeline shifted = timeline(reorderedTrack(8), {{250, -1}, {400, 300}});
    EXPECT_EQ(shifted.pieces(), (std::vector<ShownPiece>{{250, 400, 300}}));
    EXPECT_EQ(starts(shifted), (std::vector<std::int64_t>{250, 350, 450, 550}));
}

TEST(TrackTimeline, ClipsTheLastPictureAtTheEditsEnd) {
    const TrackTimeline clipped = timeline(reorderedTrack(8), {{230, 100}});
    EXPECT_EQ(clipped.end(), 230);
    EXPECT_EQ(clipped.shown().back().duration, 30);
}

TEST(TrackTimeline, ListsAPictureOnceForEachEditThatShowsIt) {
    const TrackTimeline twice = timeline(reorderedTrack(8), {{200, 100}, {300, 100}});
    EXPECT_EQ(starts(twice), (std::vector<std::int64_t>{0, 100, 200, 300, 400}));
    EXPECT_EQ(twice.pieces(), (std::vector<ShownPiece>{{0, 200, 100}, {200, 300, 100}}));
}

TEST(TrackTimeline, CutsSoundWithinAPacket) {
    Track sound = reorderedTrack(4);
    sound.handler = soundHandler;
    for (Sample& sample : sound.samples) {
        sample.compositionOffset = 0;
        sample.sync = true;
    }
    const TrackTimeline cut = timeline(sound, {{200, 130}});
    EXPECT_EQ(cut.pieces(), (std::vector<ShownPiece>{{0, 200, 130}}));
    EXPECT_EQ(starts(cut), (std::vector<std::int64_t>{0, 70, 170}));
}

TEST(TrackTimeline, OnlyMovesSamplesInFragments) {
    Track track = reorderedTrack(4);
    track.indexedSamples = 0;
    EXPECT_EQ(starts(timeline(track, {{50, -1}, {0, 100}})), (std::vector<std::int64_t>{50, 150, 250, 350}));
}

TEST(TrackTimeline, RefusesAnEditListWithoutEnd) {
    const std::vector<Edit> edits(1u << 14, Edit{std::uint64_t{1} << 62, 0});
    EXPECT_THROW(timeline(reorderedTrack(1u << 12), edits), MediaError);
}

/// Sorted presentation times of each stream's packets that libavformat does not mark as discarded.
std::map<std::size_t, std::vector<std::int64_t>> timesByProbe(const std::filesystem::path& movie) {
    std::map<std::size_t, std::vector<std::int64_t>> times;
    const auto probed = test::probe(movie, {"-show_packets"});
    for (const auto& packet : probed.at("packets")) {
        if (packet.contains("pts") && packet.at("flags").get<std::string>().find('D') == std::string::npos) {
            times[packet.at("stream_index")].push_back(packet.at("pts"));
        }
    }
    for (auto& [stream, list] : times) {
        std::sort(list.begin(), list.end());
    }
    return times;
}

void expectTimesOfLibavformat(const std::filesystem::path& file) {
    SCOPED_TRACE(file.string());
    const files::FileByteSource source(file);
    const Movie movie = readMovie(source);
    auto times = timesByProbe(file);
    for (std::size_t i = 0; i < movie.tracks.size(); ++i) {
        const Track& track = movie.tracks[i];
        if ((!track.isVideo() && !track.isSound()) || track.uniform) {
            continue; // readers cut PCM into packets of different sizes
        }
        std::vector<std::int64_t>& expected = times[i];
        std::vector<std::int64_t> placed = starts(TrackTimeline(track, movie.timescale));
        if (track.isSound() && track.indexedSamples > 0 && !expected.empty()) {
            // The part that an edit cuts from the first sound packet is removed by the decoder, not by the
            // reader.
            expected.erase(expected.begin());
            placed.erase(placed.begin());
        }
        EXPECT_EQ(placed, expected) << "track " << i;
    }
}

TEST(TrackTimeline, AgreesWithLibavformatOnRealMovies) {
    const auto movies = test::sharedMovies();
    if (movies.empty()) {
        GTEST_SKIP() << "no collection of movies here";
    }
    for (const auto& movie : movies) {
        const std::string name = movie.filename().string();
        if (name.find("broken") != 0 && movie.extension() != ".md") {
            expectTimesOfLibavformat(movie);
        }
    }
}

/// The movie with the same new edit list for all its tracks. Times in milliseconds, -1 = empty.
std::filesystem::path withEdits(const std::filesystem::path& movie, const std::filesystem::path& edited,
                                const std::vector<std::pair<int, int>>& edits) {
    test::BoxFile file = test::BoxFile::read(movie);
    const std::uint64_t scale = test::numberAt(file.movie().at("mvhd").payload, 12, 4);
    for (test::Box& track : file.movie().children) {
        if (track.type != "trak") {
            continue;
        }
        const std::uint64_t ticks = test::numberAt(track.at("mdia/mdhd").payload, 12, 4);
        test::Bytes list(4);
        test::appendNumber(list, 4, edits.size());
        for (const auto& [duration, start] : edits) {
            test::appendNumber(list, 4, static_cast<std::uint64_t>(duration) * scale / 1000);
            test::appendNumber(list, 4,
                               start < 0 ? 0xFFFFFFFF : static_cast<std::uint64_t>(start) * ticks / 1000);
            test::appendNumber(list, 4, 0x10000);
        }
        std::erase_if(track.children, [](const test::Box& box) { return box.type == "edts"; });
        track.children.push_back({"edts", {}, {{"elst", list, {}}}});
    }
    file.write(edited);
    return edited;
}

TEST(TrackTimeline, AgreesWithLibavformatOnAnyEditList) {
    const test::TemporaryFolder folder;
    const std::vector<std::vector<std::pair<int, int>>> lists{
        {{1500, 0}},                         // less than the reordering delay
        {{1500, 130}},                       // between two pictures
        {{1500, 413}},                       // within a group
        {{700, -1}, {1000, 500}},            // an empty edit first
        {{333, -1}, {211, -1}, {900, 40}},   // two of them
        {{600, 100}, {800, 1033}},           // two pieces, the second within a group
        {{500, 700}, {500, 200}},            // backwards
        {{500, 300}, {400, -1}, {500, 900}}, // an empty edit between them
        {{0, 300}},
    };
    using test::MovieCodec;
    for (const test::NumberedMovie& movie :
         {test::NumberedMovie{.gop = 12, .sound = test::SoundCodec::aac, .container = "mp4"},
          test::NumberedMovie{.gop = 10, .bFrames = 0, .container = "mov"},
          test::NumberedMovie{
              .rate = 30000, .ratePer = 1001, .gop = 16, .openGop = true, .container = "mp4"}}) {
        for (const auto& edits : lists) {
            expectTimesOfLibavformat(withEdits(test::movieFile(movie), folder / "edited.mp4", edits));
        }
    }
}

} // namespace
} // namespace zelvra::isobmff
