// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace zelvra::files {

/// A file that appears under its name only when it is complete. It is written beside its destination under a
/// short hidden name without a movie's extension; until `commit`, whatever the destination held stays there.
/// A failure leaves no file: unless committed, the destructor removes it, and `sweepStrays` recognises what a
/// killed program left, as its lock is free.
///
/// One thread at a time. Every failure throws MediaError::unwritable with one line that names the
/// destination.
class AtomicFile {
public:
    /// Creates the hidden file in the destination's folder, which must exist, and locks it. Refuses as
    /// `requireReplaceable`.
    explicit AtomicFile(std::filesystem::path destination);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Open for reading and writing. It stays this object's own.
    int descriptor() const { return descriptor_; }
    /// For writers that need a name.
    const std::filesystem::path& temporaryPath() const { return temporary_; }
    const std::filesystem::path& destination() const { return destination_; }

    void write(std::uint64_t offset, std::span<const std::uint8_t> bytes);

    /// Flushes to the disk and renames to the destination, replacing what was there. At most once.
    void commit();

    /// Throws the error of a failed operation on this file; `error` is an errno.
    [[noreturn]] void fail(int error) const;

private:
    bool createHidden();
    void discard();

    std::filesystem::path destination_;
    std::filesystem::path temporary_;
    int descriptor_ = -1;
    bool committed_ = false;
};

/// Throws MediaError::unwritable if something other than a regular file has that name: a folder, a pipe, a
/// device. A link counts as what it leads to.
void requireReplaceable(const std::filesystem::path& destination);

/// Removes hidden files of AtomicFile whose lock is free. Files that cannot be opened or removed stay.
/// Never throws.
void sweepStrays(const std::filesystem::path& folder);

} // namespace zelvra::files
