// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/isobmff/Movie.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// A coded video track and the file that has its samples: a source, or a freeze clip. Borrows both, which
/// must outlive it. Any thread.
struct SourceVideo {
    const files::ByteSource& bytes;
    const isobmff::Track& track;

    /// The only sample entry. Throws CannotPassThrough if the track uses several, or none.
    const isobmff::SampleEntry& sampleEntry() const;
    /// The coded bytes of a sample, counted in decode order. Throws MediaError if they cannot be read.
    std::vector<std::uint8_t> sample(std::uint32_t index) const;
};

} // namespace zelvra::passthrough
