// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/VideoCut.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace zelvra::passthrough {

/// Which samples of an H.264 source a movie with stills stores, and at which sites among them the stills are
/// inserted. It is the first half of a StillPlan; the second gives all samples their times. Pure.

/// A site: the place in the coded stream at which the stills of one freeze, lead-in, cover or lead-out are
/// inserted. A StillCoding says how they are coded there.
struct StillSite {
    enum class PictureType : std::uint8_t {
        idr,           ///< right before an IDR picture or the whole stream: an IDR picture too
        recoveryPoint, ///< right before a stream that starts at a non-IDR picture: an intra reference picture
                       ///< with a recovery point first, then as below
        nonReference,  ///< anywhere else: an intra picture that no other refers to
    };
    PictureType pictureType = PictureType::nonReference;
    std::size_t storedBefore = 0; ///< how many of StillSites::stored are decoded before it
    /// The last of these; `nullopt` at the start of the stream.
    std::optional<std::uint32_t> decodedBefore;
    /// The source picture that follows in decode order, if the type is `idr` or `recoveryPoint`.
    std::optional<std::uint32_t> head;
    /// Indexes of the source pictures that are shown right before and right after.
    std::optional<std::uint32_t> shownBefore;
    std::optional<std::uint32_t> shownAfter;
    bool operator==(const StillSite&) const = default;
};

struct StillSites {
    /// Indexes of the source samples that are stored, in decode order: those that are shown, and references
    /// of those.
    std::vector<std::uint32_t> stored;
    /// How many of these are decoded before anything is shown.
    std::size_t hiddenRun = 0;
    std::vector<StillSite> freezes; ///< one for each freeze of the cut
    std::optional<StillSite> leadIn;
    std::optional<StillSite> cover; ///< if and only if there is a lead-in
    std::optional<StillSite> leadOut;
    /// Sync samples of the source that must not be marked as such: a decoder that starts there outputs no
    /// still that is shown before them.
    std::set<std::uint32_t> notSync;
};

struct PictureTraits {
    bool idr = false;
    bool reference = false;
};
/// Answers for the source sample of an index. Called only for pictures near the cuts.
using TraitsOf = std::function<PictureTraits(std::uint32_t index)>;

/// Throws CannotPassThrough if no sync sample leads to the first picture that is shown.
StillSites findStillSites(const SourcePictures& pictures, const VideoCut& cut, const TraitsOf& traitsOf);

} // namespace zelvra::passthrough
