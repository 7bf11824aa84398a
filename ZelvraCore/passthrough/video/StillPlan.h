// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SamplePlan.h"
#include "ZelvraCore/passthrough/video/StillSites.h"

namespace zelvra::passthrough {

/// The layout of an H.264 movie whose freezes are *stills*: coded pictures inserted between the source's
/// samples, which all stay, once each and in their order. Stills are intra pictures and no references, so
/// they change nothing after them. Pure: it decides sites and times; StillCoder codes the stills.
struct StillPlan {
    SamplePlan samples;
    StillSites sites;
};

/// Throws CannotPassThrough if the times of the source's pictures leave no room, and as findStillSites does.
StillPlan planStills(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                     const TraitsOf& traitsOf);

} // namespace zelvra::passthrough
