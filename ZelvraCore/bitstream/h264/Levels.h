// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/Sps.h"

namespace zelvra::h264 {

/// Limits of a level (ITU-T H.264 table A-1).
struct LevelLimits {
    int maxDpbMacroblocks = 0;
    int maxCodedPictureBuffer = 0; ///< MaxCPB, in 1000 to 4000 bits by profile
};

/// Of the set's level; the highest's where the level is unknown.
LevelLimits levelLimits(const Sps& sps);

} // namespace zelvra::h264
