// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// The pictures of a source track in both of their orders. An *index* counts in decode order, a *rank* in
/// presentation order; times are ticks of the track's timescale on its media timeline. Pure; the samples are
/// borrowed and must outlive this.
class SourcePictures {
public:
    /// Throws CannotPassThrough if there is no picture, or if two are shown at one time.
    explicit SourcePictures(std::span<const isobmff::Sample> samples);

    std::uint32_t count() const { return static_cast<std::uint32_t>(samples_.size()); }
    const isobmff::Sample& sample(std::uint32_t index) const { return samples_[index]; }
    std::uint32_t indexAt(std::uint32_t rank) const { return order_[rank]; }
    std::uint32_t rankOf(std::uint32_t index) const { return rank_[index]; }

    /// Never later than the presentation time of any picture: if the source has negative composition offsets,
    /// all its decode times are moved earlier by the same amount.
    std::int64_t decodeTime(std::uint32_t index) const { return samples_[index].decodeTime - earlier_; }
    std::int64_t presentationTime(std::uint32_t index) const { return samples_[index].presentationTime(); }
    std::int64_t timeAtRank(std::uint32_t rank) const { return presentationTime(order_[rank]); }

    /// When the next picture replaces the one of that rank; the last one lasts for its own duration.
    std::int64_t endAtRank(std::uint32_t rank) const;

    /// Rank of the first picture that is shown after `time`; `count()` if there is none.
    std::uint32_t rankAfter(std::int64_t time) const;

    /// The sync sample at which decoding must start to get the picture at `index`: the last one that is
    /// neither decoded nor shown after it, and for which `suits` is true. Throws CannotPassThrough if there
    /// is none.
    std::uint32_t syncBefore(std::uint32_t index, const std::function<bool(std::uint32_t)>& suits = {}) const;

    /// Samples in decode order, both ends included.
    struct Samples {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
    };
    /// The samples that must be decoded at most to get the pictures of ranks `firstRank` up to, but not
    /// including, `endRank`, from the sync sample that `syncBefore` finds for the first one. Throws
    /// CannotPassThrough if a picture among them is decoded earlier.
    Samples decodedFor(std::uint32_t firstRank, std::uint32_t endRank,
                       const std::function<bool(std::uint32_t)>& suits = {}) const;

private:
    std::span<const isobmff::Sample> samples_;
    std::vector<std::uint32_t> order_;
    std::vector<std::uint32_t> rank_;
    std::int64_t earlier_ = 0;
};

} // namespace zelvra::passthrough
