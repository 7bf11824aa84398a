// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

#include <optional>

namespace zelvra::h264 {

/// NAL units that a still needs in addition to its picture.

/// An access unit delimiter for intra pictures (ITU-T H.264 clause 7.3.2.4, primary_pic_type 0).
bitstream::Bytes accessUnitDelimiter();

/// A recovery point message (clause D.1.8): pictures are exact from the `frameCount`-th frame_num on.
bitstream::Bytes recoveryPointSei(std::uint32_t frameCount);

/// recovery_frame_cnt of a supplemental enhancement information NAL unit; `nullopt` if it has no recovery
/// point. Malformed messages count as absent, because decoders skip them too.
std::optional<std::uint32_t> recoveryFrameCount(bitstream::ByteView seiNal);

} // namespace zelvra::h264
