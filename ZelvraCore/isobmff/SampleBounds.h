// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"

namespace zelvra::isobmff {

/// Limits on the samples and edits of a movie. They stop a hostile table from taking memory or time. One
/// object serves all tracks of a movie. Each check throws MediaError::corrupt, or `unsupported` beyond
/// `maxSamples` and `maxEdits`.
class SampleBounds {
public:
    /// For all tracks together: a day of pictures at 120 a second and of sound. A file that claims more is
    /// wrong or of no use here.
    static constexpr std::uint64_t maxSamples = std::uint64_t{1} << 24;

    /// For all tracks together. libavformat unfolds the edits of every track when it opens a movie, at a cost
    /// of at least a second's packets for each edit of a sound track.
    static constexpr std::uint64_t maxEdits = std::uint64_t{1} << 14;

    explicit SampleBounds(std::uint64_t fileSize) : fileSize_(fileSize) {}

    /// Accepts `count` more samples, each of which has bytes of its own in a table.
    void admitListed(std::uint64_t count);
    /// The same for samples that no table lists. There cannot be more of them than bytes in the file.
    void admitUnlisted(std::uint64_t count);

    void admitEdits(std::uint64_t count);

    /// Refuses a sample that is not within the file. `number` is 1-based and appears in the error.
    void requireInFile(const Sample& sample, std::uint64_t number) const;

private:
    std::uint64_t fileSize_;
    std::uint64_t admitted_ = 0;
    std::uint64_t unlisted_ = 0;
    std::uint64_t edits_ = 0;
};

} // namespace zelvra::isobmff
