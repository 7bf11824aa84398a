// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/MovieReader.h"

#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/BoxTree.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"

#include <gtest/gtest.h>

#include <string_view>

#include <functional>

namespace zelvra::isobmff {
namespace {

using test::Box;
using test::BoxFile;
using test::Bytes;
using test::NumberedMovie;
using test::SoundCodec;

Movie read(const std::filesystem::path& file) {
    const files::FileByteSource source(file);
    return readMovie(source);
}

/// The error for a refused file; empty if the file is read.
std::string refusal(const Bytes& bytes) {
    try {
        readMovie(files::MemoryByteSource(bytes, "clip"));
        return {};
    } catch (const MediaError& error) {
        return error.what();
    }
}

/// Compares a track with the samples that ffprobe lists in file order when it ignores edits.
void expectSamplesOfProbe(const std::filesystem::path& file, const Track& track, std::size_t stream) {
    const auto probed = test::probe(file, {"-advanced_editlist", "0", "-show_packets"});
    std::size_t i = 0;
    std::int64_t moved = 0; // even so, ffprobe moves the track by its edits
    for (const auto& packet : probed.at("packets")) {
        if (packet.at("stream_index") != stream) {
            continue;
        }
        ASSERT_LT(i, track.samples.size());
        const Sample& sample = track.samples[i];
        if (i == 0) {
            moved = sample.presentationTime() - packet.at("pts").get<std::int64_t>();
        }
        EXPECT_EQ(std::to_string(sample.offset), packet.at("pos").get<std::string>());
        EXPECT_EQ(std::to_string(sample.size), packet.at("size").get<std::string>());
        EXPECT_EQ(sample.presentationTime() - moved, packet.at("pts").get<std::int64_t>());
        EXPECT_EQ(sample.sync, packet.at("flags").get<std::string>().find('K') == 0) << i;
        ++i;
    }
    EXPECT_EQ(i, track.samples.size());
}

void expectMovieOfProbe(const std::filesystem::path& file) {
    SCOPED_TRACE(file.string());
    const Movie movie = read(file);
    for (std::size_t i = 0; i < movie.tracks.size(); ++i) {
        const Track& track = movie.tracks[i];
        if ((track.isVideo() || track.isSound()) && !track.uniform) {
            expectSamplesOfProbe(file, track, i);
        }
    }
}

TEST(MovieReader, ListsTheSamplesThatFfprobeLists) {
    const std::vector<std::string> negativeOffsets{"-movflags", "+negative_cts_offsets"};
    const auto fragmented = [](const char* flags) {
        return NumberedMovie{.sound = SoundCodec::aac,
                             .container = "mp4",
                             .muxArguments = {"-movflags", flags, "-frag_duration", "300000"}};
    };
    for (const NumberedMovie& movie : {
             NumberedMovie{.sound = SoundCodec::aac},
             NumberedMovie{.sound = SoundCodec::aac, .container = "mp4", .indexFirst = true},
             NumberedMovie{.openGop = true, .sound = SoundCodec::ac3, .container = "m4v"},
             NumberedMovie{.codec = test::MovieCodec::proRes}, // every sample is a sync sample
             NumberedMovie{.container = "mp4", .muxArguments = negativeOffsets},
             NumberedMovie{.sound = SoundCodec::aac, .container = "mp4", .beyond4GiB = true},
             NumberedMovie{.frameTicks = std::vector<int>{1, 512, 700, 1, 512, 512}, .timescale = 15360},
             fragmented("+frag_keyframe+empty_moov+default_base_moof"),
             fragmented("+frag_keyframe+empty_moov+omit_tfhd_offset"),
             fragmented("+frag_keyframe+empty_moov+separate_moof+negative_cts_offsets"),
             fragmented("+frag_every_frame"),
         }) {
        expectMovieOfProbe(test::movieFile(movie));
    }
}

TEST(MovieReader, ListsTheSamplesOfRealMovies) {
    const auto movies = test::sharedMovies();
    if (movies.empty()) {
        GTEST_SKIP() << "no collection of movies here";
    }
    for (const auto& movie : movies) {
        const std::string name = movie.filename().string();
        if (name.find("broken-") == 0 && name.find("nalu") == std::string::npos) {
            EXPECT_THROW(read(movie), MediaError) << name;
        } else if (movie.extension() != ".md") {
            expectMovieOfProbe(movie);
        }
    }
}

TEST(MovieReader, KeepsPcmAsRunsOfPackets) {
    for (const auto& [format, bytes] : {std::pair{"pcm_s16le", 4u}, {"pcm_s24be", 6u}, {"pcm_f32le", 8u}}) {
        const NumberedMovie movie{.sound = SoundCodec::pcm, .muxArguments = {"-c:a", format, "-ar", "96000"}};
        const Track sound = *read(test::movieFile(movie)).firstTrack(soundHandler);
        EXPECT_EQ(sound.uniform, (UniformPackets{bytes, 1})) << format;
        EXPECT_EQ(sound.mediaDuration, 2u * 96000);
        EXPECT_LT(sound.samples.size(), 200u);
        std::uint64_t size = 0;
        for (const Sample& run : sound.samples) {
            size += run.size;
        }
        EXPECT_EQ(size, sound.mediaDuration * bytes);
    }
}

TEST(MovieReader, ReadsTracksEntriesAndUserData) {
    const NumberedMovie source{
        .sound = SoundCodec::aac,
        .orientation = test::Orientation::quarterTurn,
        .muxArguments = {"-metadata", "title=Final", "-metadata:s:a:0", "language=deu"}};
    const Movie movie = read(test::movieFile(source));
    ASSERT_EQ(movie.tracks.size(), 2u);
    EXPECT_TRUE(movie.isQuickTime());
    const Track& video = *movie.firstTrack(videoHandler);
    EXPECT_EQ(video.sampleEntries.at(0).type, fourCharCode("avc1"));
    constexpr std::size_t visualEntryHeaderSize = 86;
    const auto boxes = rawBoxes(std::span(video.sampleEntries[0].box).subspan(visualEntryHeaderSize));
    EXPECT_NE(findBox(boxes, fourCharCode("avcC")), nullptr);
    EXPECT_EQ(video.matrix.a, 0);
    EXPECT_EQ(std::abs(video.matrix.b), 1);
    EXPECT_TRUE(video.hasSyncTable);
    EXPECT_EQ(rawBoxes(movie.userData).at(0).type, fourCharCode("udta"));
    EXPECT_EQ(movie.firstTrack(soundHandler)->edits.size(), 1u);
    EXPECT_EQ(movie.firstTrack(fourCharCode("text")), nullptr);
}

/// A small intact movie whose index follows its media.
BoxFile intact() {
    static const BoxFile file = BoxFile::read(
        test::movieFile({.frames = 12, .gop = 6, .sound = SoundCodec::aac, .container = "mp4"}));
    return file;
}

Bytes bytesOf(const BoxFile& file) {
    const test::TemporaryFolder folder;
    file.write(folder / "patched.mp4");
    return test::readBytes(folder / "patched.mp4");
}

struct Patch {
    const char* name;
    std::string refusal; ///< the end of the error; empty = the file is read
    std::function<void(BoxFile&)> apply;
};

/// Puts a 4-byte number into a box of the video track.
std::function<void(BoxFile&)> put(const char* path, std::size_t position, std::uint64_t number) {
    return [=](BoxFile& file) { test::putNumber(file.track("vide").at(path).payload, position, 4, number); };
}

std::function<void(BoxFile&)> drop(const char* parent, const char* type) {
    return [=](BoxFile& file) {
        std::erase_if(file.track("vide").at(parent).children,
                      [=](const Box& box) { return box.type == type; });
    };
}

class PatchedMovie : public testing::TestWithParam<Patch> {};

TEST_P(PatchedMovie, IsReadOrRefusedInOneLine) {
    BoxFile file = intact();
    GetParam().apply(file);
    const std::string line = refusal(bytesOf(file));
    if (GetParam().refusal.empty()) {
        EXPECT_EQ(line, "");
    } else {
        EXPECT_EQ(line, "cannot read 'clip': " + GetParam().refusal);
    }
}

INSTANTIATE_TEST_SUITE_P(
    MovieReader, PatchedMovie,
    testing::Values(Patch{"Intact", "", [](BoxFile&) {}},
                    Patch{"SizesClaimMoreThanTheBox",
                          "track 1 (video): box 'stsz' claims 4294967295 entries but has room for 12",
                          put("mdia/minf/stbl/stsz", 8, 0xFFFFFFFF)},
                    Patch{"OneSizeForMoreSamplesThanTheFileHolds",
                          "track 1 (video): it has more samples than the file has bytes",
                          [](BoxFile& file) {
                              put("mdia/minf/stbl/stsz", 4, 1000)(file);
                              put("mdia/minf/stbl/stsz", 8, 4000000)(file);
                          }},
                    Patch{"ASampleLongerThanTheFile",
                          "track 1 (video): sample 3 lies beyond the end of the file",
                          put("mdia/minf/stbl/stsz", 12 + 2 * 4, 0x7FFFFFFF)},
                    Patch{"AChunkBeyondTheFile", "track 1 (video): sample 1 lies beyond the end of the file",
                          put("mdia/minf/stbl/stco", 8, 0xFFFFFF00)},
                    Patch{"ChunksOutOfOrder", "track 1 (video): its table of chunks is out of order",
                          put("mdia/minf/stbl/stsc", 8, 0)},
                    Patch{"AnUnknownSampleEntry",
                          "track 1 (video): its samples name a sample entry that does not exist",
                          put("mdia/minf/stbl/stsc", 16, 2)},
                    Patch{"ChunksThatHoldTooFewSamples", "track 1 (video): its chunks hold 0 samples of 12",
                          put("mdia/minf/stbl/stsc", 4, 0)},
                    Patch{"AnEditListThatClaimsMore",
                          "track 1 (video): box 'elst' claims 268435456 entries but has room for 1",
                          put("edts/elst", 4, 0x10000000)},
                    Patch{"NoTimescale", "track 1 (video): has no timescale", put("mdia/mdhd", 12, 0)},
                    Patch{"NoDurations", "track 1 (video): its sample tables are incomplete",
                          drop("mdia/minf/stbl", "stts")},
                    Patch{"NoSampleTable", "track 1 (video): has no box 'stbl'", drop("mdia/minf", "stbl")},
                    Patch{"NoMedia", "track 1: has no box 'mdia'",
                          [](BoxFile& file) { file.movie().children[1].children.pop_back(); }},
                    Patch{"AnEntryLargerThanItsTable", "track 1 (video): box 'stsd' is cut short",
                          put("mdia/minf/stbl/stsd", 8, 0x00FFFFFF)},
                    Patch{"MediaInAnotherFile", "track 1 (video): its media is in another file",
                          put("mdia/minf/dinf/dref", 16, 0)},
                    Patch{"ACompressedIndex", "its movie index is compressed",
                          [](BoxFile& file) { file.movie().children.push_back({"cmov", Bytes(4), {}}); }},
                    Patch{"NoIndex", "has no movie index; the recording may have been cut short",
                          [](BoxFile& file) { file.boxes.pop_back(); }},
                    Patch{"NotAMovie", "is not an MP4 or QuickTime movie",
                          [](BoxFile& file) {
                              file.boxes.erase(file.boxes.begin(), file.boxes.end() - 1);
                              file.boxes[0].type = "junk";
                          }},
                    Patch{"ASyncSampleThatThereIsNot", "", put("mdia/minf/stbl/stss", 8, 0)},
                    Patch{"UnreadableTelemetry", "",
                          [](BoxFile& file) {
                              put("mdia/minf/stbl/stsz", 8, 0xFFFFFFFF)(file);
                              put("mdia/hdlr", 8, fourCharCode("meta"))(file);
                          }},
                    Patch{"DurationsThatEndEarly", "", put("mdia/minf/stbl/stts", 8, 1)},
                    Patch{"AMetaBoxOfQuickTime", "",
                          [](BoxFile& file) { file.movie().children.push_back({"meta", Bytes(40), {}}); }}),
    [](const auto& patch) { return patch.param.name; });

TEST(MovieReader, RefusesAnIndexThatIsCutShortAnywhere) {
    const Bytes whole = bytesOf(intact());
    const std::size_t index = whole.size() - intact().boxes.back().size();
    for (std::size_t size = index; size < whole.size(); size += 7) {
        EXPECT_NE(refusal(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))), "")
            << size;
    }
}

TEST(MovieReader, ReadsMediaThatReachesToTheEndAndAnIndexWithALongSize) {
    BoxFile file = intact();
    const Movie expected = readMovie(files::MemoryByteSource(bytesOf(file)));
    Bytes bytes = bytesOf(file);
    const std::size_t index = bytes.size() - file.boxes.back().size();
    // The same index with a 64-bit size, and with a last box that has no size.
    Bytes longIndex{0, 0, 0, 1, 'm', 'o', 'o', 'v'};
    test::appendNumber(longIndex, 8, bytes.size() - index + 8);
    bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(index),
                bytes.begin() + static_cast<std::ptrdiff_t>(index + 8));
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(index), longIndex.begin(), longIndex.end());
    using namespace std::string_view_literals;
    for (const std::string_view behind : {""sv, "\0\0\0\0free and more"sv}) {
        Bytes followed = bytes;
        followed.insert(followed.end(), behind.begin(), behind.end());
        EXPECT_EQ(readMovie(files::MemoryByteSource(followed)).tracks.at(0).samples,
                  expected.tracks[0].samples);
    }
}

TEST(MovieReader, RecognisesProtectedTracksAndPartialSyncSamples) {
    BoxFile file = intact();
    Box& entries = file.track("vide").at("mdia/minf/stbl/stsd");
    test::putNumber(entries.payload, 12, 4, fourCharCode("encv"));
    Bytes partial(4);
    test::appendNumber(partial, 4, 1);
    test::appendNumber(partial, 4, 4);
    file.track("vide").at("mdia/minf/stbl").children.push_back({"stps", partial, {}});
    const Movie movie = readMovie(files::MemoryByteSource(bytesOf(file)));
    EXPECT_TRUE(movie.tracks[0].isEncrypted());
    EXPECT_FALSE(movie.tracks[1].isEncrypted());
    EXPECT_TRUE(movie.tracks[0].samples[3].sync && movie.tracks[0].samples[3].partialSync);
    EXPECT_FALSE(movie.tracks[0].samples[0].partialSync);
}

TEST(MovieReader, ReportsThatAFileCannotBeOpened) {
    try {
        read("/nowhere/clip.mov");
        FAIL();
    } catch (const MediaError& error) {
        EXPECT_EQ(error.cause(), MediaError::Cause::unreadable);
        EXPECT_STREQ(error.what(), "cannot read '/nowhere/clip.mov': No such file or directory");
    }
    EXPECT_THROW(files::FileByteSource("/tmp"), MediaError);
}

TEST(MovieReader, SurvivesWhatTheFuzzerFound) {
    const std::filesystem::path inputs = ZELVRA_FUZZ_FOLDER "/regressions/movie_reader";
    for (const auto& entry : std::filesystem::directory_iterator(inputs)) {
        refusal(test::readBytes(entry.path())); // sanitizers and crashes find the faults here
    }
}

} // namespace
} // namespace zelvra::isobmff
