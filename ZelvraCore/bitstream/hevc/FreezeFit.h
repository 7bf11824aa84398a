// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/Sps.h"

#include <optional>
#include <string>

namespace zelvra::hevc {

/// What a freeze clip must look like to be spliced into an HEVC source. Pure functions of the source's
/// sequence parameter set.

/// Why no encoder of ours can match this stream; empty where it can.
std::optional<std::string> whyNoFreezeFits(const Sps& sps);

/// What the encoder must match. Throws BitstreamError (unsupported) with the reason where `whyNoFreezeFits`.
FreezeEncoding freezeEncodingFor(const Sps& sps);

} // namespace zelvra::hevc
