// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/hevc/Sps.h"

namespace zelvra::hevc {

/// Reads st_ref_pic_set() (ITU-T H.265 clauses 7.3.7, 7.4.8). `known` are the sets of the sequence parameter
/// set that were read before. `last`: the set is in a slice segment header, follows all of them, and may be
/// predicted from any. Throws BitstreamError.
ShortTermRefs parseShortTermRefs(bitstream::BitReader& reader, const std::vector<ShortTermRefs>& known,
                                 bool last);

} // namespace zelvra::hevc
