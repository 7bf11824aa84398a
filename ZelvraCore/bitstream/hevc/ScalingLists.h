// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/BitReader.h"

namespace zelvra::hevc {

/// Skips scaling_list_data() (ITU-T H.265 clause 7.3.4).
void skipScalingLists(bitstream::BitReader& reader);

} // namespace zelvra::hevc
