// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace zelvra {

/// How many chroma samples a picture has. The values are those of chroma_format_idc (ITU-T H.264 clause 6.2,
/// H.265 clause 6.2).
enum class ChromaFormat : std::uint8_t { monochrome = 0, yuv420 = 1, yuv422 = 2, yuv444 = 3 };

} // namespace zelvra
