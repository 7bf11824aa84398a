// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/isobmff/Movie.h"

namespace zelvra::isobmff {

/// Reads the index of an MP4, M4V or QuickTime movie (ISO/IEC 14496-12; the QuickTime file format): `moov` at
/// the front or the end, and every movie fragment. Media bytes are never read, so a movie of hours costs
/// milliseconds and the memory of its samples. The file is not trusted: every count, size and offset is
/// checked before use.
///
/// Any thread. Throws MediaError with one line that names the file: `unsupported` (not such a file, a
/// compressed index, media in another file), `corrupt` (a truncated or contradictory box, a sample of a
/// picture or sound track beyond the file's end), `unreadable` (an input error).
Movie readMovie(const files::ByteSource& source);

} // namespace zelvra::isobmff
