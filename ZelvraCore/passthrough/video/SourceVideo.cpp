// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SourceVideo.h"

#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>

namespace zelvra::passthrough {

const isobmff::SampleEntry& SourceVideo::sampleEntry() const {
    if (track.sampleEntries.empty() || track.samples.empty()) {
        throw CannotPassThrough("the video track holds no pictures");
    }
    const std::uint16_t used = track.samples.front().sampleEntry;
    const bool several =
        std::ranges::any_of(track.samples, [&](const isobmff::Sample& s) { return s.sampleEntry != used; });
    if (several || used >= track.sampleEntries.size()) {
        throw CannotPassThrough("its coding changes within the movie");
    }
    return track.sampleEntries[used];
}

std::vector<std::uint8_t> SourceVideo::sample(std::uint32_t index) const {
    const isobmff::Sample& sample = track.samples[index];
    return bytes.readBytes(sample.offset, sample.size);
}

} // namespace zelvra::passthrough
