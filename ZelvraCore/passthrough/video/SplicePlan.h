// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SamplePlan.h"
#include "ZelvraCore/passthrough/video/VideoCut.h"

#include <functional>

namespace zelvra::passthrough {

/// The layout of a movie whose freezes are spliced in: each freeze is a coded video sequence of its own.
/// After the freeze, decoding resumes at the sync sample before it. The pictures from there to the one that
/// is shown next are stored again, hidden; pictures that are decoded before the freeze but shown after it are
/// hidden too. Pure.

/// What decoders do with hidden pictures.
enum class Hiding : std::uint8_t {
    neverShown, ///< HEVC: they are decoded, but not output. A freeze is its clip, frame by frame.
    brief, ///< H.264: they are output like all others. A freeze is a row of stills, all of them sync samples.
           ///< Two hidden copies of the still precede each run of hidden pictures, so that a slow screen
           ///< shows the frozen picture. The range gets copies for lead-in and lead-out.
};

/// What the layout depends on besides times. The functions are called only for pictures near the cuts.
struct SpliceRules {
    Hiding hiding = Hiding::neverShown;
    /// Whether no other picture needs the source sample of an index to be decoded. It can then be left out if
    /// it is not shown.
    std::function<bool(std::uint32_t index)> isDisposable;
    /// Whether decoding can resume at a sync sample after another sequence.
    std::function<bool(std::uint32_t index)> canResumeAt;
};

/// Every `startsRun` sample except the source's first follows a cut; in HEVC its leading pictures are left
/// out. Hidden copies of a freeze's still continue the numbers of its `part`s. Throws CannotPassThrough if
/// times leave no room, or if hidden runs would be out of proportion: one of more than 20 s, or all together
/// more than half of the source.
SamplePlan planSplice(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                      const SpliceRules& rules);

} // namespace zelvra::passthrough
