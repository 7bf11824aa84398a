// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace zelvra {

/// What a render made.
struct RenderResult {
    std::filesystem::path outputURL; ///< the movie file that was written
};

} // namespace zelvra
