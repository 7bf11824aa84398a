// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace zelvra;

namespace {

/// A file in memory. Its path is valid as long as the object lives.
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

/// Opens arbitrary bytes as a movie like the program does, and decodes the first picture. The only exceptions
/// allowed are those that the program shows to the user.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    try {
        const SourceInfo info = loadSourceInfo(file.path());
        if (!info.frameDuration.isNumeric() || info.frameDuration <= CMTime::zero()) {
            std::abort();
        }
    } catch (const MediaError&) { // refused, as expected
    } catch (const ZVError&) {
    }
    return 0;
}
