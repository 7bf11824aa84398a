// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// One supplemental enhancement information message, without emulation prevention. The form is the same in
/// ITU-T H.264 and H.265 (clause 7.3.2.3, 7.3.5).
struct SeiMessage {
    std::uint32_t type = 0;
    Bytes payload;
};

/// The messages in a NAL unit's bytes after its header, up to the first that does not fit. Malformed input
/// never throws, because messages are optional for decoders.
std::vector<SeiMessage> parseSeiMessages(ByteView escaped);

/// A NAL unit made of `header` and these messages.
Bytes writeSei(ByteView header, const std::vector<SeiMessage>& messages);

} // namespace zelvra::bitstream
