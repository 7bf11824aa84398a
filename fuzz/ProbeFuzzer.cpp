// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/records/ZVError.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace zelvra;

namespace {

/// A file in memory that has a path as long as the object lives.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(::memfd_create("movie.mp4", 0)) {
        if (descriptor_ < 0 || ::write(descriptor_, data, size) != static_cast<ssize_t>(size)) {
            std::abort();
        }
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

} // namespace

/// Any bytes as a movie: what the program learns of a file when it opens it, decoding its first picture
/// included. Only the errors that it shows may come out of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    try {
        const SourceInfo info = loadSourceInfo(file.path());
        if (!info.frameDuration.isNumeric() || info.frameDuration <= CMTime::zero()) {
            std::abort();
        }
    } catch (const MediaError&) { // refused, as it should be
    } catch (const ZVError&) {
    }
    return 0;
}
