// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/SampleBounds.h"

#include <span>

namespace zelvra::isobmff {

/// Reads one `trak` box (ISO/IEC 14496-12 clause 8.3). Part of readMovie. Pure: it reads no file.
///
/// Throws MediaError whose line starts with the track's number in the file.
Track readTrack(std::span<const std::uint8_t> trackPayload, std::size_t number, SampleBounds& bounds);

/// For errors, for example "track 2 (sound)".
std::string trackName(std::size_t number, const Track& track);

} // namespace zelvra::isobmff
