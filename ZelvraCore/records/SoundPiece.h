// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

#include <cstdint>

namespace zelvra {

/// One piece of a finished movie's sound. The pieces of a movie follow one another without a gap: a stretch
/// of the source's presentation timeline, or silence as long as a freeze.
struct SoundPiece {
    enum class Kind { source, silence };

    Kind kind = Kind::source;
    CMTime sourceStart; ///< of a source piece; not used by silence
    CMTime duration;
};

/// The maximum length of a finished movie's sound. A longer one results from a damaged index, whose gaps
/// would otherwise be filled with endless silence.
inline constexpr CMTime longestSound{std::int64_t{48} * 3600, 1};

} // namespace zelvra
