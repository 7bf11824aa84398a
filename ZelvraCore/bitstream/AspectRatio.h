#pragma once

#include "ZelvraCore/bitstream/BitReader.h"

namespace zelvra::bitstream {

/// The shape of a sample, width to height; 0 to 0 where unspecified.
struct AspectRatio {
    int width = 0;
    int height = 0;
};

/// aspect_ratio_idc and what follows it (ITU-T H.264 and H.265 table E-1, the same in both).
AspectRatio parseAspectRatio(BitReader& reader);

} // namespace zelvra::bitstream
