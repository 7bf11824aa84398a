// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SamplePlan.h"
#include "ZelvraCore/passthrough/video/VideoCut.h"

#include <functional>
#include <optional>
#include <vector>

namespace zelvra::passthrough {

/// The layout of an H.264 movie whose freezes are *stills*: coded pictures inserted between the source's
/// samples, which all stay, once each and in their order. Being intra pictures and no reference, stills
/// change nothing after them. Pure: it decides places and times; StillCoder codes the stills.

/// Where a still stands in the coded stream, which decides how it is coded.
struct StillSite {
    enum class Coding {
        idr,      ///< in front of an IDR picture or of the whole stream: an IDR picture too
        recovery, ///< in front of a stream that starts at a non-IDR picture: an intra reference picture
                  ///< first, then as below
        inserted, ///< anywhere else: an intra picture that nothing refers to
    };
    Coding coding = Coding::inserted;
    /// The stored source sample decoded right before; nothing at the start of the stream.
    std::optional<std::uint32_t> decodedBefore;
    /// The source picture that follows in decode order where the coding is `idr` or `recovery`.
    std::optional<std::uint32_t> head;
    /// Indexes of the source pictures that are shown right before and right after.
    std::optional<std::uint32_t> shownBefore;
    std::optional<std::uint32_t> shownAfter;
};

struct StillPlan {
    SamplePlan samples;
    std::vector<StillSite> freezes; ///< one for each freeze of the cut
    std::optional<StillSite> leadIn;
    std::optional<StillSite> cover; ///< exactly where there is a lead-in
    std::optional<StillSite> leadOut;
};

struct PictureTraits {
    bool idr = false;
    bool reference = false;
};
/// Answers for the source sample of an index. Asked only about pictures near the cuts.
using TraitsOf = std::function<PictureTraits(std::uint32_t index)>;

/// Throws CannotPassThrough where times leave no room.
StillPlan planStills(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                     const TraitsOf& traitsOf);

} // namespace zelvra::passthrough
