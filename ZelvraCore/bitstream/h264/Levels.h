// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/Sps.h"

namespace zelvra::h264 {

/// Limits of a level (ITU-T H.264 table A-1).
struct LevelLimits {
    int maxDpbMacroblocks = 0;
    int maxCodedPictureBuffer = 0; ///< MaxCPB, in units of 1000 to 4000 bits, depending on the profile
};

/// The limits of the set's level; those of the highest level if the set's is unknown.
LevelLimits levelLimits(const Sps& sps);

} // namespace zelvra::h264
