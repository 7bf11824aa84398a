// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/SampleBounds.h"

#include <span>

namespace zelvra::isobmff {

/// Reads one `trak` box (ISO/IEC 14496-12 clause 8.3). Part of readMovie; pure.
///
/// Throws MediaError whose line starts with the track's number in the file.
Track readTrack(std::span<const std::uint8_t> trackPayload, std::size_t number, SampleBounds& bounds);

/// "track 2 (sound)", for errors.
std::string trackName(std::size_t number, const Track& track);

} // namespace zelvra::isobmff
