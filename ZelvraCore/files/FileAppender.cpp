// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/files/FileAppender.h"

#include "ZelvraCore/records/Cancellation.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace zelvra::files {

namespace {

/// Shorter stretches go through memory, many to a write: a system call for each would cost more.
constexpr std::uint64_t leastKernelCopy = std::uint64_t{32} << 10;
/// Memory for stretches that go through it.
constexpr std::size_t bufferBytes = std::size_t{256} << 10;
/// Copied between two reports of progress; a request to stop is noticed then.
constexpr std::uint64_t stepBytes = std::uint64_t{16} << 20;
/// Written between two requests to the disk to start on it. The copy goes on meanwhile, so the final flush
/// has little left to do.
constexpr std::uint64_t flushBytes = std::uint64_t{32} << 20;

} // namespace

FileAppender::FileAppender(AtomicFile& file, std::uint64_t totalBytes, const WriteProgress& progress,
                           const std::stop_token& stop)
    : file_(file), totalBytes_(totalBytes), progress_(progress), stop_(stop) {
    buffer_.reserve(bufferBytes);
}

void FileAppender::append(std::span<const std::uint8_t> bytes) {
    emptyBuffer();
    file_.write(position_, bytes);
    position_ += bytes.size();
}

void FileAppender::append(const ByteSource& source, std::uint64_t offset, std::uint64_t bytes) {
    const bool inKernel = bytes >= leastKernelCopy && source.descriptor() && kernelCopies_;
    while (bytes > 0) {
        const std::uint64_t step = std::min(bytes, stepBytes);
        const std::uint64_t copied =
            inKernel ? copyInKernel(source, offset, step) : copyThroughMemory(source, offset, step);
        offset += copied;
        bytes -= copied;
        report();
    }
}

void FileAppender::finish() {
    emptyBuffer();
    if (progress_) {
        progress_(1);
    }
}

std::uint64_t FileAppender::copyThroughMemory(const ByteSource& source, std::uint64_t offset,
                                              std::uint64_t bytes) {
    if (buffer_.size() == bufferBytes) {
        emptyBuffer();
    }
    const std::size_t before = buffer_.size();
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, bufferBytes - before));
    buffer_.resize(before + count);
    source.read(offset, std::span(buffer_).subspan(before));
    return count;
}

/// Uses memory from then on if the file system does not support such copies.
std::uint64_t FileAppender::copyInKernel(const ByteSource& source, std::uint64_t offset,
                                         std::uint64_t bytes) {
    emptyBuffer();
    auto from = static_cast<off_t>(offset);
    auto to = static_cast<off_t>(position_);
    const ssize_t count =
        kernelCopies_ ? ::copy_file_range(*source.descriptor(), &from, file_.descriptor(), &to, bytes, 0)
                      : -1;
    if (count > 0) {
        position_ += static_cast<std::uint64_t>(count);
        return static_cast<std::uint64_t>(count);
    }
    if (count < 0 && kernelCopies_) {
        switch (errno) {
        case EINTR: return 0;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
        case EIO: file_.fail(errno);
        default: kernelCopies_ = false;
        }
    }
    // At the source's end the count is 0: reading throws an error that names the source.
    return copyThroughMemory(source, offset, bytes);
}

void FileAppender::emptyBuffer() {
    file_.write(position_, buffer_);
    position_ += buffer_.size();
    buffer_.clear();
}

void FileAppender::report() {
    if (written() < nextReport_) {
        return;
    }
    nextReport_ = written() + stepBytes;
    throwIfStopped(stop_);
    if (progress_) {
        progress_(static_cast<double>(written()) / static_cast<double>(totalBytes_));
    }
    if (position_ - flushed_ >= flushBytes) {
        ::sync_file_range(file_.descriptor(), static_cast<off_t>(flushed_),
                          static_cast<off_t>(position_ - flushed_), SYNC_FILE_RANGE_WRITE);
        flushed_ = position_;
    }
}

} // namespace zelvra::files
