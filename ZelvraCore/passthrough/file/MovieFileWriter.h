// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/files/FileAppender.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <filesystem>
#include <stop_token>

namespace zelvra::passthrough {

/// Writes a planned movie: index first, then the media in one pass, as fast as a copy. It decides nothing but
/// the order of chunks. Bytes that are together in a store are moved together, inside the kernel if both
/// sides are files; memory does not grow with the media.

/// The bytes that a movie's samples refer to, by Store. Borrowed: both must outlive the write.
struct MovieStores {
    const files::ByteSource& source;
    const files::ByteSource& spool;

    const files::ByteSource& of(Store store) const { return store == Store::source ? source : spool; }
};

/// The destination appears only when it is complete and on the disk; until then it keeps what it held. A
/// failure or a stop leaves nothing behind.
///
/// Blocks; any thread. Throws MediaError: `unwritable` (disk full, no such folder, no permission), `corrupt`
/// or `unreadable` (a store that has become shorter, an input error), `cancelled`, `unsupported` (see
/// buildMovieIndex).
void writeMovieFile(const OutputMovie& movie, const MovieStores& stores,
                    const std::filesystem::path& destination, const files::WriteProgress& progress = {},
                    const std::stop_token& stop = {});

} // namespace zelvra::passthrough
