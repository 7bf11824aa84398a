// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelvra::files {

/// Random access to bytes that do not change, in a file or in memory. The reader of an index and the writer
/// of a movie use it, so that neither depends on where the bytes are stored. Nothing is cached: a read is one
/// system call. All operations may be called from several threads at once.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// The number of bytes when the source was opened.
    virtual std::uint64_t size() const = 0;

    /// Fills `bytes` from `offset` on. Throws MediaError: `corrupt` if the source ends before,
    /// `unreadable` if the system reports an error.
    virtual void read(std::uint64_t offset, std::span<std::uint8_t> bytes) const = 0;

    /// An open descriptor of a file with the same bytes at the same offsets, for copies inside the kernel;
    /// `nullopt` for bytes that are not in a file. The source owns it.
    virtual std::optional<int> descriptor() const { return std::nullopt; }

    /// What to call the source in an error, such as its path.
    virtual std::string name() const = 0;

    /// `read` into a new vector. Refuses (as `corrupt`) a length beyond the source's end before allocating.
    std::vector<std::uint8_t> readBytes(std::uint64_t offset, std::uint64_t length) const;
};

/// A file, opened for reading for as long as this lives. Throws MediaError::unreadable when it cannot be
/// opened or is not a regular file.
class FileByteSource final : public ByteSource {
public:
    explicit FileByteSource(const std::filesystem::path& path);
    ~FileByteSource() override;

    std::uint64_t size() const override { return size_; }
    void read(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;
    std::optional<int> descriptor() const override { return descriptor_; }
    std::string name() const override { return path_.string(); }

private:
    std::filesystem::path path_;
    int descriptor_ = -1;
    std::uint64_t size_ = 0;
};

/// Bytes in memory, owned by this.
class MemoryByteSource final : public ByteSource {
public:
    explicit MemoryByteSource(std::vector<std::uint8_t> bytes, std::string name = "memory");

    std::uint64_t size() const override { return bytes_.size(); }
    void read(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;
    std::string name() const override { return name_; }

    std::span<const std::uint8_t> bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
    std::string name_;
};

} // namespace zelvra::files
