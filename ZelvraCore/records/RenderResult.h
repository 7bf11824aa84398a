#pragma once

#include <filesystem>

namespace zelvra {

/// What a render made.
struct RenderResult {
    std::filesystem::path outputURL; ///< the movie file that was written
};

} // namespace zelvra
