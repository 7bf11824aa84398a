// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/IdentifyMovie.h"
#include "ZelvraCore/records/MediaError.h"
#include "tests/support/BoxTree.h"
#include "tests/support/NumberedMovie.h"

#include <gtest/gtest.h>

#include <set>

namespace zelvra::media {
namespace {

using test::Bytes;
using test::movieFile;
using test::NumberedMovie;
using test::TemporaryFolder;

const NumberedMovie sample{.frames = 90, .sound = test::SoundCodec::aac, .container = "mp4"};

TEST(IdentifyMovie, KnowsACopyUnderAnyNameAndTime) {
    const TemporaryFolder folder;
    const std::filesystem::path original = movieFile(sample);
    const MovieIdentity identity = identifyMovie(original);
    EXPECT_EQ(identity.size, std::filesystem::file_size(original));
    EXPECT_EQ(identifyMovie(Asset(original)), identity);
    std::filesystem::create_directory(folder / "archive");
    std::filesystem::copy_file(original, folder / "game.mp4");
    EXPECT_EQ(identifyMovie(folder / "game.mp4"), identity);
    std::filesystem::rename(folder / "game.mp4", folder / "archive/\xFF.mov");
    std::filesystem::last_write_time(folder / "archive/\xFF.mov", {});
    EXPECT_EQ(identifyMovie(folder / "archive/\xFF.mov"), identity);
}

TEST(IdentifyMovie, DistinguishesTheFormsOfOneRecording) {
    const TemporaryFolder folder;
    NumberedMovie first = sample;
    first.indexFirst = true;
    NumberedMovie fragmented = sample;
    fragmented.fragmented = true;
    Bytes half = test::readBytes(movieFile(sample));
    half.resize(half.size() / 2); // without its index
    test::writeBytes(folder / "half.mp4", half);
    test::writeBytes(folder / "empty.mp4", {});
    const std::set<MovieIdentity> identities{
        identifyMovie(movieFile(sample)),     identifyMovie(movieFile(first)),
        identifyMovie(movieFile(fragmented)), identifyMovie(folder / "half.mp4"),
        identifyMovie(folder / "empty.mp4"),
    };
    EXPECT_EQ(identities.size(), 5U);
    EXPECT_THROW(identifyMovie(folder / "missing.mp4"), MediaError);
    EXPECT_THROW(identifyMovie(folder.path()), MediaError);
}

/// A file of boxes that hold nothing but zeros.
struct Layout {
    std::vector<std::pair<std::string, std::size_t>> boxes; ///< type and size

    Bytes bytes() const {
        Bytes bytes;
        for (const auto& [type, size] : boxes) {
            test::appendNumber(bytes, 4, size);
            bytes.insert(bytes.end(), type.begin(), type.end());
            bytes.resize(bytes.size() + size - 8);
        }
        return bytes;
    }
    /// The middle of the box with that number.
    std::size_t middleOf(std::size_t box) const {
        std::size_t position = boxes[box].second / 2;
        for (std::size_t i = 0; i < box; ++i) {
            position += boxes[i].second;
        }
        return position;
    }
};

/// Whether a change of one byte in the middle of a box gives the movie another identity.
bool distinguishes(const Layout& layout, std::size_t box) {
    Bytes changed = layout.bytes();
    changed[layout.middleOf(box)] ^= 1;
    const MovieIdentity one = identifyMovie(files::MemoryByteSource(layout.bytes()));
    const MovieIdentity other = identifyMovie(files::MemoryByteSource(changed));
    EXPECT_EQ(one.size, other.size);
    return one != other;
}

TEST(IdentifyMovie, DistinguishesRecordingsOfEqualSizeByTheirIndexAndTheirEnds) {
    constexpr std::size_t far = 200 << 10;
    const Layout movie{{{"ftyp", 24},
                        {"mdat", far},
                        {"moov", 5000},
                        {"mdat", far},
                        {"moof", 300},
                        {"mdat", far},
                        {"free", far}}};
    EXPECT_TRUE(distinguishes(movie, 0));
    EXPECT_TRUE(distinguishes(movie, 2));
    EXPECT_TRUE(distinguishes(movie, 4));
    EXPECT_FALSE(distinguishes(movie, 3)) << "the media are not read";

    const Layout constantSize{{{"ftyp", 24}, {"mdat", 100 << 10}, {"moov", 5000}}};
    EXPECT_TRUE(distinguishes(constantSize, 1)) << "samples of equal sizes and times";

    EXPECT_FALSE(distinguishes({{{"ftyp", 24}, {"mdat", far}, {"free", 4}, {"moov", far}, {"mdat", far}}}, 3))
        << "no box has 4 bytes, so the index cannot be found";
}

TEST(IdentifyMovie, EndsSoonForAFileThatIsMadeToTakeLong) {
    Layout boxes;
    boxes.boxes.assign(1 << 21, {"free", 8});
    EXPECT_EQ(identifyMovie(files::MemoryByteSource(boxes.bytes())).size, 16U << 20);
}

} // namespace
} // namespace zelvra::media
