// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/SpoolStore.h"

#include "ZelvraCore/records/MediaError.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace zelvra::passthrough {

namespace {

[[noreturn]] void throwUnwritable(const std::filesystem::path& folder) {
    throw MediaError::cannotWrite(folder.string(), systemReason(errno));
}

/// For file systems without nameless files: the name is removed at once.
int makeAndUnlink(const std::filesystem::path& folder) {
    std::string name = (folder / ".zelvra-spool-XXXXXX").string();
    const int descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) {
        unlink(name.c_str());
    }
    return descriptor;
}

} // namespace

SpoolStore::SpoolStore(const std::filesystem::path& folder)
    : folder_(folder), descriptor_(open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600)) {
    if (descriptor_ < 0) {
        descriptor_ = makeAndUnlink(folder);
    }
    if (descriptor_ < 0) {
        throwUnwritable(folder);
    }
}

SpoolStore::~SpoolStore() {
    close(descriptor_);
}

StoredBytes SpoolStore::append(std::span<const std::uint8_t> bytes) {
    const StoredBytes stored{Store::spool, static_cast<std::uint32_t>(bytes.size()), size_};
    while (!bytes.empty()) {
        const ssize_t written = pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(size_));
        if (written < 0 && errno != EINTR) {
            throwUnwritable(folder_);
        }
        if (written > 0) {
            size_ += static_cast<std::uint64_t>(written);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
    }
    return stored;
}

void SpoolStore::read(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t got = pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            throw MediaError::cannotRead(name(), systemReason(errno));
        }
        if (got == 0) {
            throw MediaError::cannot(MediaError::Cause::corrupt, "read", name(), "it ends too early");
        }
        offset += static_cast<std::uint64_t>(got);
        bytes = bytes.subspan(static_cast<std::size_t>(got));
    }
}

std::string SpoolStore::name() const {
    return "the temporary file in " + folder_.string();
}

} // namespace zelvra::passthrough
