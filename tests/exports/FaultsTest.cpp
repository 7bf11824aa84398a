// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/Render.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/Thumbnails.h"
#include "ZelvraCore/records/FourCharCode.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/MovieSurgery.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/NumberedPicture.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const NumberedMovie movie{.frames = 60, .sound = SoundCodec::aac, .container = "mp4"};

std::vector<Highlight> highlight() {
    return {markerHighlight(1, movie.timeOf(20), CMTime(300, 600), {320, 180})};
}

/// Uses a temporary folder of its own as the system's, so that leftovers of other programs do not count.
class Faults : public testing::Test {
protected:
    Faults() { setenv("TMPDIR", temporary_.path().c_str(), 1); }
    ~Faults() override { unsetenv("TMPDIR"); }

    std::vector<std::string> strays() const {
        std::vector<std::string> names = temporary_.names();
        std::erase_if(names, [](const std::string& name) { return !name.starts_with("zv_"); });
        return names;
    }

    std::string failureOf(const std::filesystem::path& source, const std::filesystem::path& output,
                          const RenderOptions& options = {}) const;

    TemporaryFolder folder;

private:
    TemporaryFolder temporary_;
};

/// The error line of an export; empty if it succeeds.
std::string Faults::failureOf(const std::filesystem::path& source, const std::filesystem::path& output,
                              const RenderOptions& options) const {
    try {
        renderHighlights(source, highlight(), output, options);
    } catch (const std::exception& e) {
        const std::string line = e.what();
        EXPECT_EQ(line.find('\n'), std::string::npos) << "one line";
        EXPECT_THAT(strays(), IsEmpty());
        return line;
    }
    return {};
}

TEST_F(Faults, RefuseToReplaceTheSource) {
    const std::filesystem::path source = folder / "match.mp4";
    std::filesystem::copy_file(movieFile(movie), source);
    std::filesystem::create_symlink(source, folder / "link.mp4");
    EXPECT_THAT(failureOf(source, source), HasSubstr("would replace the source"));
    EXPECT_THAT(failureOf(source, folder / "link.mp4"), HasSubstr("would replace the source"));
    EXPECT_EQ(readBytes(source), readBytes(movieFile(movie)));
}

TEST_F(Faults, KeepTheOldOutputAndLeaveNoOtherFile) {
    writeBytes(folder / "out.mp4", {1, 2, 3});

    RenderOptions beyond;
    beyond.sourceRange = CMTimeRange{CMTime(50, 1), CMTime(1, 1)};
    EXPECT_FALSE(failureOf(movieFile(movie), folder / "out.mp4", beyond).empty());
    RenderOptions backwards;
    backwards.sourceRange = CMTimeRange{CMTime(1, 1), CMTime(-1, 1)};
    EXPECT_FALSE(failureOf(movieFile(movie), folder / "out.mp4", backwards).empty());
    RenderOptions endless;
    endless.sourceRange = CMTimeRange{CMTime::zero(), CMTime::indefinite()};
    EXPECT_FALSE(failureOf(movieFile(movie), folder / "out.mp4", endless).empty());

    // A source that lost its second half after its index was written.
    NumberedMovie indexFirst = movie;
    indexFirst.indexFirst = true;
    Bytes half = readBytes(movieFile(indexFirst));
    half.resize(half.size() / 2);
    writeBytes(folder / "half.mp4", half);
    EXPECT_FALSE(failureOf(folder / "half.mp4", folder / "out.mp4").empty());
    EXPECT_FALSE(failureOf(folder / "nowhere.mp4", folder / "out.mp4").empty());
    std::filesystem::remove(folder / "half.mp4");

    EXPECT_FALSE(failureOf(movieFile(movie), folder / "no such folder/out.mp4").empty());
    EXPECT_THAT(folder.names(), ElementsAre("out.mp4"));
    EXPECT_EQ(readBytes(folder / "out.mp4"), (Bytes{1, 2, 3}));
}

TEST_F(Faults, RefuseAMovieThatCannotBeShownInEachOperation) {
    const auto refused = [this](const std::string& name, const std::string& reason, auto change) {
        BoxFile file = BoxFile::read(movieFile(movie));
        change(file);
        file.write(folder / name);
        const Asset source(folder / name);
        const std::string line = "cannot read '" + source.path().string() + "': " + reason;
        const auto throwsIt = testing::ThrowsMessage<MediaError>(line);
        EXPECT_THAT([&] { loadSourceInfo(source); }, throwsIt);
        EXPECT_THAT([&] { extractFrame(source, CMTime::zero()); }, throwsIt);
        EXPECT_THAT([&] { extractFrameOnScreen(source, movie.timeOf(60)); }, throwsIt);
        EXPECT_THAT([&] { makeThumbnails(source, {2, 90}, [](auto&&...) {}); }, throwsIt);
        EXPECT_EQ(failureOf(folder / name, folder / "out.mp4"), line);
        EXPECT_FALSE(std::filesystem::exists(folder / "out.mp4"));
    };
    refused("nothing shown.mp4", "it holds no pictures",
            [](BoxFile& file) { showOnly(file, std::vector{CMTimeRange{CMTime(100, 1), CMTime(1, 1)}}); });
    refused("only an index.mp4", "it holds no pictures",
            [](BoxFile& file) { file.track("vide").at("mdia/minf/stbl/stsz").payload.assign(12, 0); });
    const auto appendEdits = [](Box& track, int count) {
        Bytes& list = track.at("edts/elst").payload;
        for (int i = 0; i < count; ++i) {
            appendNumber(list, 4, 0);
            appendNumber(list, 4, 90'000); // in the last packet
            appendNumber(list, 4, 0x10000);
        }
        putNumber(list, 4, 4, numberAt(list, 4, 4) + static_cast<std::uint64_t>(count));
    };
    refused("many edits.mp4", "track 2 (sound): the movie has more than 16384 edits",
            [&](BoxFile& file) { appendEdits(file.track("soun"), 1'000'000); });
    refused("vain edits.mp4", "too many of its edits show nothing",
            [&](BoxFile& file) { appendEdits(file.track("soun"), 16'000); });
    refused("encrypted.mp4", "it is encrypted", [](BoxFile& file) {
        putNumber(file.track("vide").at("mdia/minf/stbl/stsd").payload, 12, 4, fourCharCode("encv"));
    });
}

TEST_F(Faults, StopSoonAndCleanlyWhenInterrupted) {
    for (const double when : {0.0, 0.4, 0.9}) {
        const TemporaryFolder output;
        std::stop_source stop;
        RenderOptions options;
        options.stop = stop.get_token();
        options.progress = [&](double fraction) {
            if (fraction >= when) {
                stop.request_stop();
            }
        };
        if (when == 0) {
            stop.request_stop();
        }
        const std::string line = failureOf(movieFile(movie), output / "out.mp4", options);
        if (when < 0.9) { // the last step may be too short to be stopped
            EXPECT_EQ(line, "cancelled");
        }
        EXPECT_THAT(output.names(), testing::AnyOf(IsEmpty(), ElementsAre("out.mp4")));
    }
}

TEST_F(Faults, RemoveFilesLeftByAKilledExport) {
    const std::filesystem::path source = movieFile(movie);
    const pid_t child = fork();
    if (child == 0) {
        RenderOptions options;
        options.progress = [](double fraction) {
            if (fraction >= 0.5) {
                raise(SIGKILL);
            }
        };
        renderHighlights(source, highlight(), folder / "out.mp4", options);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_FALSE(std::filesystem::exists(folder / "out.mp4"));
    EXPECT_FALSE(strays().empty());

    renderHighlights(source, highlight(), folder / "out.mp4");
    EXPECT_THAT(folder.names(), ElementsAre("out.mp4"));
    EXPECT_THAT(strays(), IsEmpty());
}

TEST_F(Faults, NameAMissingTemporaryFolderAndCopyWithoutIt) {
    setenv("TMPDIR", "/no such folder", 1);
    const std::filesystem::path source = movieFile(movie);
    const auto throwsIt = testing::ThrowsMessage<MediaError>(
        "cannot use the temporary folder '/no such folder': No such file or directory");
    EXPECT_THAT([&] { renderHighlights(source, highlight(), folder / "out.mp4"); }, throwsIt);
    EXPECT_THAT(folder.names(), IsEmpty());
    renderHighlights(source, {}, folder / "copy.mp4");
    EXPECT_EQ(readBytes(folder / "copy.mp4"), readBytes(source));
}

TEST_F(Faults, DoNotWaitForATemporaryFolderThatAnotherProgramHasLocked) {
    const int lock = open(std::getenv("TMPDIR"), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    EXPECT_EQ(failureOf(movieFile(movie), folder / "out.mp4"), "");
    close(lock);
    EXPECT_THAT(folder.names(), ElementsAre("out.mp4"));
}

TEST_F(Faults, ReportAClipThatCannotBeRemoved) {
    std::vector<std::string> notices;
    RenderOptions options;
    options.notice = [&](const std::string& line) { notices.push_back(line); };
    std::string clip;
    options.progress = [&](double fraction) {
        if (fraction < 1 || !clip.empty()) {
            return;
        }
        // When all is written, a folder with something in it takes the clip's place.
        clip = std::string(std::getenv("TMPDIR")) + "/" + strays().at(0);
        std::filesystem::remove(clip);
        std::filesystem::create_directories(clip + "/inside");
    };
    renderHighlights(movieFile(movie), highlight(), folder / "out.mp4", options);
    EXPECT_THAT(notices, ElementsAre("A temporary file could not be removed: " + clip + "."));
    EXPECT_THAT(folder.names(), ElementsAre("out.mp4"));
}

/// From now on, this system call of the calling thread fails.
void breakSystemCall(unsigned number) {
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EIO),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{program.size(), program.data()};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}

TEST_F(Faults, WriteTheIndexOfANewlyEncodedMovieCorrectlyOrNotAtAll) {
    const std::filesystem::path source = movieFile({.frames = 30, .codec = MovieCodec::mpeg4});
    for (const unsigned call : {SYS_lseek, SYS_read, SYS_pread64, SYS_pwrite64}) {
        const TemporaryFolder output;
        const pid_t child = fork();
        if (child == 0) {
            RenderOptions options;
            options.progress = [call](double fraction) {
                if (fraction >= 1) { // all pictures are written, but not the index
                    breakSystemCall(call);
                }
            };
            _exit(failureOf(source, output / "out.mov", options).empty() ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (WEXITSTATUS(status) == 0) {
            EXPECT_EQ(showMovie(output / "out.mov").frames.size(), 45U) << call;
        } else {
            EXPECT_THAT(output.names(), IsEmpty()) << call;
        }
    }
}

TEST_F(Faults, ReportAFullDisk) {
    if (mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "only root can make a tiny disk";
    }
    const std::string line = failureOf(movieFile(movie), folder / "out.mp4");
    const std::vector<std::string> left = folder.names();
    umount(folder.path().c_str());
    EXPECT_THAT(line, HasSubstr("No space left on device"));
    EXPECT_THAT(left, IsEmpty());
}

} // namespace
} // namespace zelvra::test
