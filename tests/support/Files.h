// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zelvra::test {

/// A folder for one test. It is removed with everything in it when the test ends.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
    /// Names of all files and folders directly inside, hidden ones too, sorted.
    std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

/// A real movie of the collection beside the source tree (../shared/media). `nullopt` if it is missing; the
/// test should then skip itself.
std::optional<std::filesystem::path> sharedMovie(const std::string& name);
/// All files of that collection, sorted; empty if there is none. A few that the engine is known to read
/// wrongly are left out; each is named, with its fault, in Files.cpp.
std::vector<std::filesystem::path> sharedMovies();

using Bytes = std::vector<std::uint8_t>;

Bytes readBytes(const std::filesystem::path& file);
void writeBytes(const std::filesystem::path& file, const Bytes& bytes);

} // namespace zelvra::test
