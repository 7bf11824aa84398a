// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace zelvra::passthrough {

/// Bytes of our own that a movie is written from: silent packets, re-encoded sound, stills. They are in a
/// temporary file without a name, so nothing is left behind however the program ends; memory does not grow
/// with it.
///
/// What was appended may be read from several threads; one thread at a time appends.
class SpoolStore final : public files::ByteSource {
public:
    /// Throws MediaError::unwritable if no file can be made in `folder`.
    explicit SpoolStore(const std::filesystem::path& folder);
    ~SpoolStore() override;

    /// Returns them as part of Store::spool. Throws MediaError::unwritable (disk full, an input or output
    /// error).
    StoredBytes append(std::span<const std::uint8_t> bytes);

    std::uint64_t size() const override { return size_; }
    void read(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;
    std::optional<int> descriptor() const override { return descriptor_; }
    std::string name() const override;

private:
    std::filesystem::path folder_;
    int descriptor_ = -1;
    std::uint64_t size_ = 0;
};

} // namespace zelvra::passthrough
