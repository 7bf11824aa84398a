// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/records/FourCharCode.h"

#include <cstdint>
#include <optional>

namespace zelvra::isobmff {

/// A top-level box of a file. Its payload is not read.
struct FileBox {
    FourCharCode type = 0;
    std::uint64_t offset = 0;
    std::uint64_t headerSize = 0;
    std::uint64_t size = 0; ///< header included, never smaller than it; may reach beyond the file

    std::uint64_t payloadSize() const { return size - headerSize; }
};

/// The box that starts at `offset`, which must not be beyond the file's end. `nullopt` if no box can start
/// there: fewer than 8 bytes are left, or the size is invalid. Throws as ByteSource::read.
std::optional<FileBox> fileBoxAt(const files::ByteSource& source, std::uint64_t offset);

} // namespace zelvra::isobmff
