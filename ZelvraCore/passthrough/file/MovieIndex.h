// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/ChunkLayout.h"

#include <span>

namespace zelvra::passthrough {

/// The bytes of a movie file before its media: `ftyp`, `moov` and the header of `mdat` (ISO/IEC 14496-12
/// clauses 4.3, 8.1, 8.2; in QuickTime's forms for that container). Pure. The index comes first, so its own
/// length moves the media that it points to. It is built again until both agree, with 64-bit chunk offsets if
/// the last one needs them.
///
/// Throws MediaError::unsupported if a number does not fit the format.
std::vector<std::uint8_t> buildMovieIndex(const OutputMovie& movie, std::span<const OutputChunk> chunks);

/// Ticks a second of the movie's timeline: the least common multiple of the tracks' timescales while it fits
/// 31 bits (some readers count with a sign), so that every edit's length is exact.
std::uint32_t movieTimescale(const OutputMovie& movie);

} // namespace zelvra::passthrough
