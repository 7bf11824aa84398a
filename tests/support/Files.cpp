// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/Files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace zelvra::test {
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "zelvra-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "cannot make " + name);
    }
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored; // leftovers in /tmp are no reason to fail a test
    fs::remove_all(path_, ignored);
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<fs::path> sharedMovie(const std::string& name) {
    const fs::path file = fs::path(ZELVRA_SOURCE_FOLDER) / "../shared/media" / name;
    return fs::exists(file) ? std::optional(fs::canonical(file)) : std::nullopt;
}

namespace {

/// Movies that the engine reads wrongly so far. An entry goes when its fault is mended.
constexpr std::array<std::string_view, 4> withKnownFaults{
    "frag-66-rotate-buck-bunny.mp4", // negative offsets in fragments: libavformat's times start later
    "hdr-32-sample_edit_list_no_sync_frame_before_edit.mp4", // times are 11.7 ms early
    "media__sample_sef_slow_motion.mp4",                     // has samples without a picture
    "media__sample_with_fake_auxiliary_tracks.mp4",          // pictures at one and the same time
};

} // namespace

std::vector<fs::path> sharedMovies() {
    std::vector<fs::path> movies;
    const std::optional<fs::path> folder = sharedMovie(".");
    if (folder) {
        for (const fs::directory_entry& entry : fs::directory_iterator(*folder)) {
            const fs::path& file = entry.path();
            const bool knownFault = std::ranges::count(withKnownFaults, file.filename().string()) > 0;
            if (entry.is_regular_file() && file.extension() != ".md" && !knownFault) {
                movies.push_back(file);
            }
        }
    }
    std::sort(movies.begin(), movies.end());
    return movies;
}

Bytes readBytes(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeBytes(const fs::path& file, const Bytes& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace zelvra::test
