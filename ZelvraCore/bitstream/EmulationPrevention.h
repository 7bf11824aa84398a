// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// Emulation prevention (ITU-T H.264 and H.265 clause 7.4.1, 7.4.2). Within a NAL unit no three bytes may
/// look like a start code. Therefore a 3 is inserted after two zeros if a byte of 0...3 follows, and after a
/// final zero.

/// Appends `payload` to `nal`. Zeros at the end of `nal` are not counted, as the NAL unit's header byte ends
/// any run of zeros.
void appendWithEmulationPrevention(Bytes& nal, ByteView payload);

/// A NAL unit made of `header` and `payload`.
Bytes withEmulationPrevention(ByteView header, ByteView payload);

/// The payload of stored bytes.
Bytes withoutEmulationPrevention(ByteView escaped);

} // namespace zelvra::bitstream
