// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/files/ByteSource.h"

#include <cstdint>
#include <functional>
#include <span>
#include <stop_token>
#include <vector>

namespace zelvra::files {

/// Called with the fraction done, from 0 to 1, which never decreases; on the thread that writes.
using WriteProgress = std::function<void(double)>;

/// Writes a file from start to end, as fast as a copy: bytes of sources that are files are moved inside the
/// kernel, short stretches are collected in memory first. Memory does not grow with the file.
///
/// Everything that is passed in is borrowed. One thread. Throws MediaError: `unwritable`, `cancelled`, and
/// what reading a source throws.
class FileAppender {
public:
    /// `totalBytes` is what will be written in all, for the progress.
    FileAppender(AtomicFile& file, std::uint64_t totalBytes, const WriteProgress& progress,
                 const std::stop_token& stop);

    /// Bytes in memory, at once.
    void append(std::span<const std::uint8_t> bytes);

    /// A stretch of `source`.
    void append(const ByteSource& source, std::uint64_t offset, std::uint64_t bytes);

    /// Writes what is still in memory. The file's own `commit` is left to the caller.
    void finish();

private:
    std::uint64_t written() const { return position_ + buffer_.size(); }
    std::uint64_t copyThroughMemory(const ByteSource& source, std::uint64_t offset, std::uint64_t bytes);
    std::uint64_t copyInKernel(const ByteSource& source, std::uint64_t offset, std::uint64_t bytes);
    void emptyBuffer();
    void report();

    AtomicFile& file_;
    std::uint64_t totalBytes_;
    const WriteProgress& progress_;
    const std::stop_token& stop_;
    std::vector<std::uint8_t> buffer_;
    std::uint64_t position_ = 0; ///< in the file, of what is not in the buffer
    std::uint64_t nextReport_ = 0;
    std::uint64_t flushed_ = 0;
    bool kernelCopies_ = true;
};

} // namespace zelvra::files
