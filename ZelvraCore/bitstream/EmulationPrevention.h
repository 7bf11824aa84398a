// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// Emulation prevention (ITU-T H.264 and H.265 clause 7.4.1, 7.4.2): within a NAL unit no three bytes may
/// look like a start code, so a 3 is put after two zeros wherever a byte of 0...3 follows, and after a last
/// zero.

/// Appends `payload` to `nal`. What is there already counts: the NAL unit's header byte ends any run of
/// zeros.
void appendWithEmulationPrevention(Bytes& nal, ByteView payload);

/// A NAL unit of `header` and `payload`.
Bytes withEmulationPrevention(ByteView header, ByteView payload);

/// The payload of stored bytes.
Bytes withoutEmulationPrevention(ByteView escaped);

} // namespace zelvra::bitstream
