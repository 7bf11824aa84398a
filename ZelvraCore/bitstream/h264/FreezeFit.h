// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/Pps.h"
#include "ZelvraCore/bitstream/h264/Sps.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <optional>
#include <string>

namespace zelvra::h264 {

/// The properties that a freeze clip must have to be inserted into an H.264 source's own stream. Pure
/// functions of the source's parameter sets. Conditions that depend on the source's pictures (fields, order
/// counts) are checked by the planner.

/// Why no available encoder can match this stream; `nullopt` if one can.
std::optional<std::string> whyNoFreezeFits(const Sps& sps);

/// The properties that the encoder must match. `pps` is one that the source's pictures use. Throws
/// BitstreamError (unsupported) with the reason if `whyNoFreezeFits` returns one.
FreezeEncoding freezeEncodingFor(const Sps& sps, const Pps& pps);

/// The maximum size of a still in bytes: a twelfth of the coded picture buffer that the level allows. Then
/// the run of stills at the start of a freeze does not overflow a decoder that reads at the level's maximum
/// rate. MaxCPB counts 1000 bits in Baseline, Main and Extended, 1250 in High, 3000 in High 10, 4000 above
/// (ITU-T H.264 tables ).
std::uint64_t maxStillBytes(const Sps& sps);

} // namespace zelvra::h264
