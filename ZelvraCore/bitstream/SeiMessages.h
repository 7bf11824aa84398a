// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// One supplemental enhancement information message, without emulation prevention (ITU-T H.264 and H.265
/// clause 7.3.2.3, 7.3.5: the form is the same).
struct SeiMessage {
    std::uint32_t type = 0;
    Bytes payload;
};

/// The messages of a NAL unit's bytes behind its header, up to the first that does not fit. Never throws for
/// what it reads: messages are advice.
std::vector<SeiMessage> parseSeiMessages(ByteView escaped);

/// A NAL unit of `header` and these messages.
Bytes writeSei(ByteView header, const std::vector<SeiMessage>& messages);

} // namespace zelvra::bitstream
