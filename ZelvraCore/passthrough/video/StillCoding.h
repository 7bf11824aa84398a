// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/Still.h"
#include "ZelvraCore/passthrough/video/SamplePlan.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace zelvra::passthrough {

/// How the stills of one site in an H.264 stream are coded: those of a freeze, of a lead-in, a cover or a
/// lead-out. A StillSite says where the site is in the stream. Plain values.
struct StillCoding {
    h264::Sps sps;           ///< of the source; the stills are decoded with it
    bool repeatsSps = false; ///< the stills repeat it if the source carries parameter sets in its samples
    std::vector<h264::StillHeader> headers; ///< of the first still, of the second ...
    bool takesTurns = false; ///< after the last header the first is used again; otherwise the last one stays

    /// Which of `headers` the still of that number has.
    std::size_t headerOf(std::uint32_t part) const {
        return takesTurns ? part % headers.size() : std::min<std::size_t>(part, headers.size() - 1);
    }
};

/// The codings of all stills of a movie.
struct StillCodings {
    std::optional<StillCoding> leadIn;
    std::optional<StillCoding> cover;
    std::vector<StillCoding> freezes; ///< one for each freeze of the cut
    std::optional<StillCoding> leadOut;

    /// `still` is a sample of the same movie's plan that is not the source's.
    const StillCoding& of(const PlannedSample& still) const;
};

/// IDR stills. Neighbouring IDR pictures must differ in idr_pic_id (ITU-T H.264 clause 7.4.3), so the stills
/// use two ids in turn, neither of them in `taken`.
StillCoding idrCoding(const h264::Sps& sps, const std::set<std::uint32_t>& taken);

/// Every idr_pic_id that stills of this coding have.
std::set<std::uint32_t> idrPicIdsOf(const StillCoding& coding);

} // namespace zelvra::passthrough
