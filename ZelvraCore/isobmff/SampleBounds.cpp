// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/SampleBounds.h"

#include "ZelvraCore/records/MediaError.h"

namespace zelvra::isobmff {

void SampleBounds::admitListed(std::uint64_t count) {
    if (count > maxSamples - admitted_) {
        throw MediaError(MediaError::Cause::unsupported,
                         "the movie has more than " + std::to_string(maxSamples) + " samples");
    }
    admitted_ += count;
}

void SampleBounds::admitUnlisted(std::uint64_t count) {
    if (count > fileSize_ - unlisted_) {
        throw MediaError(MediaError::Cause::corrupt, "it has more samples than the file has bytes");
    }
    unlisted_ += count;
    admitListed(count);
}

void SampleBounds::admitEdits(std::uint64_t count) {
    if (count > maxEdits - edits_) {
        throw MediaError(MediaError::Cause::unsupported,
                         "the movie has more than " + std::to_string(maxEdits) + " edits");
    }
    edits_ += count;
}

void SampleBounds::requireInFile(const Sample& sample, std::uint64_t number) const {
    if (sample.offset > fileSize_ || sample.size > fileSize_ - sample.offset) {
        throw MediaError(MediaError::Cause::corrupt,
                         "sample " + std::to_string(number) + " lies beyond the end of the file");
    }
}

} // namespace zelvra::isobmff
