// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>

namespace zelvra::passthrough {

/// Writes a planned movie: index first, then the media in one pass, as fast as a copy. It decides nothing but
/// where chunks lie. Bytes that lie together in a store are moved together, inside the kernel where both
/// sides are files; memory does not grow with the media.

/// The stores that StoredBytes::store counts. Shared, as a store may serve several movies; kept open
/// meanwhile.
using MovieStores = std::vector<std::shared_ptr<const files::ByteSource>>;

/// Called with the fraction done, from 0 to 1, never falling; on the thread that writes.
using WriteProgress = std::function<void(double)>;

/// The destination appears only when it is complete and on the disk; whatever it held lives until then. A
/// failure or a stop leaves nothing behind.
///
/// Blocks; any thread. Throws MediaError: `unwritable` (disk full, no such folder, no permission), `corrupt`
/// or `unreadable` (a store that has become shorter, an input error), `cancelled`, `unsupported` (see
/// buildMovieIndex).
void writeMovieFile(const OutputMovie& movie, const MovieStores& stores,
                    const std::filesystem::path& destination, const WriteProgress& progress = {},
                    const std::stop_token& stop = {});

/// Writes the same bytes as `source`, by the same means and with the same promises.
void copyFile(const std::shared_ptr<const files::ByteSource>& source,
              const std::filesystem::path& destination, const WriteProgress& progress = {},
              const std::stop_token& stop = {});

} // namespace zelvra::passthrough
