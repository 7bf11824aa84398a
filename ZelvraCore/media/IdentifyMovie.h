// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/MovieIdentity.h"

#include <filesystem>

namespace zelvra::media {

/// What a movie is known by under any name: the size of its file, and a digest of the file's first and last
/// 64 KiB and of its index (`moov`, wherever it is, and the fragments' own `moof`).
///
/// A copy, a renamed and a moved file have the same identity. Two recordings differ even if their sizes are
/// equal: by the sizes and times of their samples, or else by their bytes. A file that is no such movie, or
/// whose index is cut off, has an identity too.
///
/// Reads nothing else, so it costs milliseconds: a recording of 4 hours has an index of 20 MB. The file is
/// not trusted: at most 512 MiB of index are read. Nothing is decoded. Any thread; blocks on the file. Throws
/// MediaError: `unreadable`, and `corrupt` if the file becomes shorter meanwhile.
MovieIdentity identifyMovie(const Asset& asset);
MovieIdentity identifyMovie(const std::filesystem::path& movie);
MovieIdentity identifyMovie(const files::ByteSource& movie);

} // namespace zelvra::media
