// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/Pps.h"
#include "ZelvraCore/bitstream/h264/Sps.h"
#include "ZelvraCore/records/FreezeEncoding.h"

#include <optional>
#include <string>

namespace zelvra::h264 {

/// What a freeze clip must look like to stand in an H.264 source's own stream. Pure functions of the source's
/// parameter sets; what depends on its pictures (fields, order counts) is for the planner to see.

/// Why no encoder of ours can match this stream; empty where it can.
std::optional<std::string> whyNoFreezeFits(const Sps& sps);

/// What the encoder must match. `pps` is one that the source's pictures use. Throws BitstreamError
/// (unsupported) with the reason where `whyNoFreezeFits`.
FreezeEncoding freezeEncodingFor(const Sps& sps, const Pps& pps);

/// The most bytes that a still may have: a twelfth of the coded picture buffer that the level allows, so that
/// the run of stills at the head of a freeze does not overflow a decoder that feeds at the level's own rate.
/// MaxCPB counts 1000 bits in Baseline, Main and Extended, 1250 in High, 3000 in High 10, 4000 above (ITU-T
/// H.264 tables ).
std::uint64_t mostStillBytes(const Sps& sps);

} // namespace zelvra::h264
