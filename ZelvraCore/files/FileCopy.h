// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/files/FileAppender.h"

#include <filesystem>
#include <stop_token>

namespace zelvra::files {

/// Writes the same bytes as `source` to `destination`, inside the kernel if `source` is a file. The
/// destination appears only when it is complete and on the disk; until then it keeps what it held. A failure
/// or a stop leaves nothing behind.
///
/// Blocks; any thread. Throws MediaError: `unwritable`, `corrupt` or `unreadable` (the source has become
/// shorter, an input error), `cancelled`.
void copyFile(const ByteSource& source, const std::filesystem::path& destination,
              const WriteProgress& progress = {}, const std::stop_token& stop = {});

} // namespace zelvra::files
