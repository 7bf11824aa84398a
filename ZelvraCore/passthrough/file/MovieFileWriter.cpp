// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/MovieFileWriter.h"

#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/passthrough/file/MovieIndex.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace zelvra::passthrough {

namespace {

/// A stretch of one store.
struct Run {
    std::uint32_t store = 0;
    std::uint64_t offset = 0;
    std::uint64_t bytes = 0;
};

/// Shorter runs go through memory, many to a write: a call into the kernel for each would cost more.
constexpr std::uint64_t leastKernelCopy = std::uint64_t{32} << 10;
/// Memory for runs that go through it.
constexpr std::size_t bufferBytes = std::size_t{256} << 10;
/// So many bytes are copied before progress is told and a stop is looked for.
constexpr std::uint64_t stepBytes = std::uint64_t{16} << 20;
/// The disk starts on what was written so far while the copy goes on, so that the final flush finds little.
constexpr std::uint64_t flushBytes = std::uint64_t{32} << 20;

/// Appends bytes to the file, in order, and keeps count.
class MediaCopy {
public:
    MediaCopy(files::AtomicFile& file, const MovieStores& stores, std::uint64_t totalBytes,
              const WriteProgress& progress, const std::stop_token& stop)
        : file_(file), stores_(stores), totalBytes_(totalBytes), progress_(progress), stop_(stop) {
        buffer_.reserve(bufferBytes);
    }

    void append(std::span<const std::uint8_t> bytes) {
        file_.write(position_, bytes);
        position_ += bytes.size();
    }

    void append(Run run) {
        const files::ByteSource& store = *stores_.at(run.store);
        const bool inKernel = run.bytes >= leastKernelCopy && store.descriptor() && kernelCopies_;
        while (run.bytes > 0) {
            const std::uint64_t step = std::min(run.bytes, stepBytes);
            const std::uint64_t copied =
                inKernel ? copyInKernel(store, run.offset, step) : copyThroughMemory(store, run.offset, step);
            run.offset += copied;
            run.bytes -= copied;
            report();
        }
    }

    void finish() {
        emptyBuffer();
        if (progress_) {
            progress_(1);
        }
    }

private:
    std::uint64_t written() const { return position_ + buffer_.size(); }

    std::uint64_t copyThroughMemory(const files::ByteSource& store, std::uint64_t offset,
                                    std::uint64_t bytes) {
        if (buffer_.size() == bufferBytes) {
            emptyBuffer();
        }
        const std::size_t before = buffer_.size();
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, bufferBytes - before));
        buffer_.resize(before + count);
        store.read(offset, std::span(buffer_).subspan(before));
        return count;
    }

    /// Falls back on memory for good where the file system knows no such copy.
    std::uint64_t copyInKernel(const files::ByteSource& store, std::uint64_t offset, std::uint64_t bytes) {
        emptyBuffer();
        auto from = static_cast<off_t>(offset);
        auto to = static_cast<off_t>(position_);
        const ssize_t count =
            kernelCopies_ ? ::copy_file_range(*store.descriptor(), &from, file_.descriptor(), &to, bytes, 0)
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
        // At a store's end the count is 0: reading says so in its own words.
        return copyThroughMemory(store, offset, bytes);
    }

    void emptyBuffer() {
        file_.write(position_, buffer_);
        position_ += buffer_.size();
        buffer_.clear();
    }

    void report() {
        if (written() < nextReport_) {
            return;
        }
        nextReport_ = written() + stepBytes;
        if (stop_.stop_requested()) {
            throw MediaError(MediaError::Cause::cancelled, "cancelled");
        }
        if (progress_) {
            progress_(static_cast<double>(written()) / static_cast<double>(totalBytes_));
        }
        if (position_ - flushed_ >= flushBytes) {
            ::sync_file_range(file_.descriptor(), static_cast<off_t>(flushed_),
                              static_cast<off_t>(position_ - flushed_), SYNC_FILE_RANGE_WRITE);
            flushed_ = position_;
        }
    }

    files::AtomicFile& file_;
    const MovieStores& stores_;
    std::uint64_t totalBytes_;
    const WriteProgress& progress_;
    const std::stop_token& stop_;
    std::vector<std::uint8_t> buffer_;
    std::uint64_t position_ = 0; ///< in the file, of what is not in the buffer
    std::uint64_t nextReport_ = 0;
    std::uint64_t flushed_ = 0;
    bool kernelCopies_ = true;
};

/// Calls `copy` for each run of the media, in file order; samples that lie together in a store are one run.
template <class Copy>
void forEachRun(const OutputMovie& movie, std::span<const OutputChunk> chunks, Copy copy) {
    std::optional<Run> run;
    for (const OutputChunk& chunk : chunks) {
        for (std::size_t i = 0; i < chunk.samples; ++i) {
            const StoredBytes& bytes = movie.tracks[chunk.track].samples[chunk.firstSample + i].bytes;
            if (run && run->store == bytes.store && run->offset + run->bytes == bytes.offset) {
                run->bytes += bytes.size;
                continue;
            }
            if (run) {
                copy(*run);
            }
            run = Run{bytes.store, bytes.offset, bytes.size};
        }
    }
    if (run) {
        copy(*run);
    }
}

} // namespace

void writeMovieFile(const OutputMovie& movie, const MovieStores& stores,
                    const std::filesystem::path& destination, const WriteProgress& progress,
                    const std::stop_token& stop) {
    const std::vector<OutputChunk> chunks = layOutChunks(movie);
    const std::vector<std::uint8_t> index = buildMovieIndex(movie, chunks);
    const std::uint64_t mediaBytes = chunks.empty() ? 0 : chunks.back().offset + chunks.back().bytes;

    files::AtomicFile file(destination);
    MediaCopy copy(file, stores, index.size() + mediaBytes, progress, stop);
    copy.append(index);
    forEachRun(movie, chunks, [&copy](const Run& run) { copy.append(run); });
    copy.finish();
    file.commit();
}

void copyFile(const std::shared_ptr<const files::ByteSource>& source,
              const std::filesystem::path& destination, const WriteProgress& progress,
              const std::stop_token& stop) {
    const MovieStores stores{source};
    files::AtomicFile file(destination);
    MediaCopy copy(file, stores, source->size(), progress, stop);
    copy.append(Run{0, 0, source->size()});
    copy.finish();
    file.commit();
}

} // namespace zelvra::passthrough
