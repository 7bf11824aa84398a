// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace zelvra {

/// The colour space of sample values: code points of ISO/IEC 23091-2 (2 = unspecified).
struct ColorDescription {
    int primaries = 2;
    int transfer = 2;
    int matrix = 2;
    bool fullRange = false;
    int chromaLocation = 0; ///< chroma_sample_loc_type + 1 of the coded stream; 0 = not stated
    bool operator==(const ColorDescription&) const = default;
};

} // namespace zelvra
