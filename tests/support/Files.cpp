// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
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

std::vector<fs::path> sharedMovies() {
    std::vector<fs::path> movies;
    const std::optional<fs::path> folder = sharedMovie(".");
    if (folder) {
        for (const fs::directory_entry& entry : fs::directory_iterator(*folder)) {
            if (entry.is_regular_file() && entry.path().extension() != ".md") {
                movies.push_back(entry.path());
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
