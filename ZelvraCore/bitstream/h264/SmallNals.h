// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

#include <optional>

namespace zelvra::h264 {

/// NAL units that hold no picture but that a still needs beside it.

/// An access unit delimiter for intra pictures (ITU-T H.264 clause 7.3.2.4, primary_pic_type 0).
bitstream::Bytes accessUnitDelimiter();

/// A recovery point message (clause D.1.8): the pictures from the `frameCount`-th frame_num on are exact.
bitstream::Bytes recoveryPointSei(std::uint32_t frameCount);

/// recovery_frame_cnt of a supplemental enhancement information NAL unit, where it holds a recovery point.
/// Malformed messages count as none: they are advice, and decoders skip them.
std::optional<std::uint32_t> recoveryFrameCount(bitstream::ByteView seiNal);

} // namespace zelvra::h264
