// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/MovieFileWriter.h"

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/ZelvraCore/passthrough/file/CopyPlan.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

namespace zelvra::passthrough {
namespace {

using Container = MovieContainer;
using test::NumberedMovie;
using test::SoundCodec;

struct Copy {
    explicit Copy(const std::filesystem::path& file, Container container = Container::mpeg4)
        : source(file), plan(test::copyPlan(isobmff::readMovie(source), container)) {}

    MovieStores stores() const { return {source, noSpool}; }

    files::FileByteSource source;
    files::MemoryByteSource noSpool{{}};
    OutputMovie plan;
};

/// A movie large enough for several steps of the copy: its pictures are stored again and again.
struct LargeCopy : Copy {
    explicit LargeCopy(const std::filesystem::path& file) : Copy(file) {
        OutputTrack& video = plan.tracks.at(0);
        const std::vector<OutputSample> once = video.samples;
        const std::int64_t length = video.mediaDuration;
        for (int i = 1; i < 400; ++i) {
            for (OutputSample sample : once) {
                sample.decodeTime += i * length;
                video.samples.push_back(sample);
            }
        }
        video.mediaDuration *= 400;
    }
};

std::filesystem::path aMovie() {
    return test::movieFile({.width = 640, .height = 360, .frames = 90, .sound = SoundCodec::aac});
}

/// What the write throws; `nullopt` if it succeeds.
std::optional<MediaError> failure(const Copy& copy, const std::filesystem::path& destination,
                                  const files::WriteProgress& progress = {},
                                  const std::stop_token& stop = {}) {
    try {
        writeMovieFile(copy.plan, copy.stores(), destination, progress, stop);
        return std::nullopt;
    } catch (const MediaError& error) {
        return error;
    }
}

TEST(MovieFileWriter, WritesMoviesThatShowAndSoundTheSame) {
    const test::TemporaryFolder folder;
    struct Case {
        NumberedMovie movie;
        Container container;
        const char* name;
    };
    for (const Case& test :
         {Case{{.sound = SoundCodec::aac}, Container::mpeg4, "a.mp4"},
          Case{{.openGop = true, .sound = SoundCodec::aac, .fragmented = true}, Container::appleM4v, "b.m4v"},
          Case{{.rate = 30000, .ratePer = 1001, .sound = SoundCodec::pcm}, Container::quickTime, "c.mov"},
          Case{{.codec = test::MovieCodec::hevc, .beyond4GiB = true}, Container::mpeg4, "d.mp4"}}) {
        SCOPED_TRACE(test.name);
        const auto source = test::movieFile(test.movie);
        const Copy copy(source, test.container);
        writeMovieFile(copy.plan, copy.stores(), folder / test.name);
        EXPECT_EQ(test::hashFrames(folder / test.name), test::hashFrames(source));
        EXPECT_EQ(test::readSound(folder / test.name).samples, test::readSound(source).samples);
        EXPECT_TRUE(test::showMovie(folder / test.name).faults.empty());
    }
}

TEST(MovieFileWriter, WritesTheSameBytesFromMemoryAsFromAFile) {
    const test::TemporaryFolder folder;
    const Copy copy(aMovie());
    writeMovieFile(copy.plan, copy.stores(), folder / "file.mp4");
    const files::MemoryByteSource memory(test::readBytes(aMovie()));
    writeMovieFile(copy.plan, {memory, copy.noSpool}, folder / "memory.mp4");
    EXPECT_EQ(test::readBytes(folder / "file.mp4"), test::readBytes(folder / "memory.mp4"));
}

TEST(MovieFileWriter, ReportsItsProgressToTheEnd) {
    const test::TemporaryFolder folder;
    std::vector<double> reported;
    ASSERT_FALSE(failure(LargeCopy(aMovie()), folder / "out.mp4",
                         [&reported](double done) { reported.push_back(done); }));
    EXPECT_GT(reported.size(), 3u);
    EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
    EXPECT_EQ(reported.back(), 1);
}

TEST(MovieFileWriter, StopsSoonAndLeavesTheOldOutput) {
    const test::TemporaryFolder folder;
    test::writeBytes(folder / "out.mp4", {7});
    std::stop_source stop;
    const auto error = failure(
        LargeCopy(aMovie()), folder / "out.mp4",
        [&stop](double done) {
            EXPECT_LT(done, 0.9);
            stop.request_stop();
        },
        stop.get_token());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->cause(), MediaError::Cause::cancelled);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"out.mp4"});
    EXPECT_EQ(test::readBytes(folder / "out.mp4"), test::Bytes{7});
}

TEST(MovieFileWriter, RefusesASourceThatHasBecomeShorter) {
    const test::TemporaryFolder folder;
    std::filesystem::copy_file(aMovie(), folder / "source.mov");
    for (const std::uintmax_t left : {std::uintmax_t{0}, std::uintmax_t{4000}}) {
        const Copy shortened(folder / "source.mov");
        std::filesystem::resize_file(folder / "source.mov", left);
        const auto error = failure(shortened, folder / "out.mp4");
        ASSERT_TRUE(error);
        EXPECT_EQ(error->what(), "cannot read '" + (folder / "source.mov").string() +
                                     "': it ends before the data that it should hold");
        EXPECT_EQ(folder.names(), std::vector<std::string>{"source.mov"});
        test::writeBytes(folder / "source.mov", test::readBytes(aMovie()));
    }
}

TEST(MovieFileWriter, SaysThatTheDiskIsFull) {
    const test::TemporaryFolder folder;
    if (::mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=1m") != 0) {
        GTEST_SKIP() << "may not mount a small file system";
    }
    const auto error = failure(LargeCopy(aMovie()), folder / "out.mp4");
    EXPECT_TRUE(folder.names().empty());
    ::umount(folder.path().c_str());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->cause(), MediaError::Cause::unwritable);
    EXPECT_EQ(error->what(), "cannot write '" + (folder / "out.mp4").string() + "': No space left on device");
}

} // namespace
} // namespace zelvra::passthrough
