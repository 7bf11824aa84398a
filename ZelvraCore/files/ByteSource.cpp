// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/files/ByteSource.h"

#include "ZelvraCore/records/MediaError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zelvra::files {

namespace {

[[noreturn]] void failReading(const std::string& name, int error) {
    throw MediaError::cannotRead(name, systemReason(error));
}

[[noreturn]] void failShort(const std::string& name) {
    throw MediaError::cannot(MediaError::Cause::corrupt, "read", name,
                             "it ends before the data that it should hold");
}

/// Whether `length` bytes from `offset` on are within `size`.
bool contains(std::uint64_t size, std::uint64_t offset, std::uint64_t length) {
    return offset <= size && length <= size - offset;
}

} // namespace

std::vector<std::uint8_t> ByteSource::readBytes(std::uint64_t offset, std::uint64_t length) const {
    if (!contains(size(), offset, length)) {
        failShort(name());
    }
    std::vector<std::uint8_t> bytes(length);
    read(offset, bytes);
    return bytes;
}

// O_NONBLOCK: opening a pipe must not wait, as it is refused anyway. It changes nothing for regular files.
FileByteSource::FileByteSource(const std::filesystem::path& path)
    : path_(path), descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor_ < 0) {
        failReading(name(), errno);
    }
    struct stat status{};
    const int error = ::fstat(descriptor_, &status) != 0 ? errno
                      : S_ISDIR(status.st_mode)          ? EISDIR
                      : S_ISREG(status.st_mode)          ? 0
                                                         : EINVAL;
    if (error != 0) {
        ::close(descriptor_);
        failReading(name(), error);
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
}

FileByteSource::~FileByteSource() {
    ::close(descriptor_);
}

void FileByteSource::read(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    if (!contains(size_, offset, bytes.size())) {
        failShort(name());
    }
    while (!bytes.empty()) {
        const ssize_t count = ::pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            failReading(name(), errno);
        }
        if (count == 0) { // the file has become shorter since it was opened
            failShort(name());
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

MemoryByteSource::MemoryByteSource(std::vector<std::uint8_t> bytes, std::string name)
    : bytes_(std::move(bytes)), name_(std::move(name)) {}

void MemoryByteSource::read(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    if (!contains(size(), offset, bytes.size())) {
        failShort(name_);
    }
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), bytes_.data() + offset, bytes.size());
    }
}

} // namespace zelvra::files
