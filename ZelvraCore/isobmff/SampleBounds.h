// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"

namespace zelvra::isobmff {

/// What the size of a movie's file says about its samples, so that no table of a hostile one is believed
/// before memory is taken. One for all tracks of a movie. Every refusal is MediaError::corrupt, or
/// `unsupported` beyond `mostSamples`.
class SampleBounds {
public:
    /// Of all tracks together: a day of pictures at 120 a second and of sound. More is a lie, or of no use
    /// here.
    static constexpr std::uint64_t mostSamples = std::uint64_t{1} << 24;

    explicit SampleBounds(std::uint64_t fileSize) : fileSize_(fileSize) {}

    /// Lets a track have `count` samples more, each of which has bytes of its own in a table.
    void admitListed(std::uint64_t count);
    /// The same for samples that no table lists: they cannot be more than the file has bytes.
    void admitUnlisted(std::uint64_t count);

    /// Refuses a sample that does not lie within the file. `number` counts from 1, for the error.
    void requireInFile(const Sample& sample, std::uint64_t number) const;

private:
    std::uint64_t fileSize_;
    std::uint64_t admitted_ = 0;
    std::uint64_t unlisted_ = 0;
};

} // namespace zelvra::isobmff
