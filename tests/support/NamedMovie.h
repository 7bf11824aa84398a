// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/FrameIndex.h"
#include "tests/support/NumberedMovie.h"

#include <ostream>

namespace zelvra::test {

/// A kind of movie that a test is run with, and the name that a failure shows.
struct NamedMovie {
    const char* name;
    NumberedMovie movie;
};

inline std::ostream& operator<<(std::ostream& stream, const NamedMovie& kind) {
    return stream << kind.name;
}

/// Exact, because the timescale is doubled.
inline CMTime middleOf(const FrameIndex::Frame& frame) {
    return {2 * frame.time.value + frame.duration.value, 2 * frame.time.timescale};
}

} // namespace zelvra::test
