// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/Sps.h"

#include <optional>
#include <string>

namespace zelvra::hevc {

/// The properties that a freeze clip must have to be spliced into an HEVC source. Pure functions of the
/// source's sequence parameter set.

/// Why no available encoder can match this stream; `nullopt` if one can.
std::optional<std::string> whyNoFreezeFits(const Sps& sps);

/// The properties that the encoder must match. Throws BitstreamError (unsupported) with the reason if
/// `whyNoFreezeFits` returns one.
FreezeEncoding freezeEncodingFor(const Sps& sps);

} // namespace zelvra::hevc
