// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SamplePlan.h"
#include "ZelvraCore/passthrough/video/VideoCut.h"

#include <functional>

namespace zelvra::passthrough {

/// The layout of a movie whose freezes are spliced in: each freeze is a coded video sequence of its own.
/// After it decoding resumes at the sync sample before, whose pictures up to the resuming one are stored
/// again, hidden; so are pictures that are decoded before a freeze but shown after it. Pure.

/// What decoders make of hidden pictures.
enum class Hiding : std::uint8_t {
    neverShown, ///< HEVC: they are decoded and not given out. A freeze is its clip, frame by frame.
    brief, ///< H.264: they are given out like all others. A freeze is stills that are sync samples all of
           ///< them; two more, hidden copies lead each run of hidden pictures, so that it is the frozen
           ///< picture that a slow screen catches. The range gets copies for lead-in and lead-out.
};

/// What the layout depends on beside times. The functions are asked only about pictures near the cuts.
struct SpliceRules {
    Hiding hiding = Hiding::neverShown;
    /// Whether no other picture needs the source sample of an index to be decoded, so that it can be left out
    /// where it is not shown.
    std::function<bool(std::uint32_t index)> isDisposable;
    /// Whether decoding can resume behind another sequence at a sync sample.
    std::function<bool(std::uint32_t index)> canResumeAt;
};

/// Every `startsRun` sample but the source's first follows a cut; in HEVC leading pictures behind it are left
/// out. Hidden copies of a freeze's still count on behind its `part`s. Throws CannotPassThrough where times
/// leave no room, or where hidden runs would be out of proportion: one of more than 20 s, or all together
/// more than half of the source.
SamplePlan planSplice(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                      const SpliceRules& rules);

} // namespace zelvra::passthrough
