// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/BitReader.h"

namespace zelvra::bitstream {

/// Reads the first part of the video usability information, which is the same in ITU-T H.264 (E.1.1) and
/// H.265 (E.2.1): aspect ratio, overscan, video signal, chroma sample location. Returns
/// `video_full_range_flag`. The other values are taken from the decoder.
bool parseFullRange(BitReader& reader);

} // namespace zelvra::bitstream
