#pragma once

#include "ZelvraCore/passthrough/SamplePlan.h"
#include "ZelvraCore/passthrough/VideoCut.h"

#include <functional>

namespace zelvra::passthrough {

/// The layout of a movie whose freezes are spliced in: each freeze clip is a coded video sequence of its own.
/// After it decoding resumes at the sync sample before, whose pictures up to the resuming one are stored
/// again, hidden; so are pictures that are decoded before a freeze but shown after it. Made for HEVC, where
/// hidden pictures are decoded and never given out. Pure.

/// Whether no other picture needs the source sample of an index to be decoded, so that it can be left out
/// where it is not shown. Asked only about pictures near the cuts.
using IsDisposable = std::function<bool(std::uint32_t index)>;

/// Every `startsRun` sample but the source's first follows a cut; leading pictures behind it are left out.
/// Throws CannotPassThrough where times leave no room, or where hidden runs would be out of proportion: one
/// of more than 20 s, or all together more than half of the source.
SamplePlan planSplice(const SourcePictures& pictures, std::uint32_t timescale, const VideoCut& cut,
                      const IsDisposable& isDisposable);

} // namespace zelvra::passthrough
