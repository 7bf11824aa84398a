// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/video/SamplePlan.h"

namespace zelvra::passthrough {

/// The output's video track as far as plan and source decide it: times and header. Samples are in the order
/// of the plan and have their times, but no bytes yet; the caller adds these and the sample entry.
///
/// The edit starts at `editStart`, which is not less than the plan's. If it is greater, only the first sample
/// lasts longer: hidden samples at the start keep their times, all others move.
OutputTrack plannedTrack(const SamplePlan& plan, const isobmff::Track& source, std::int64_t editStart);

} // namespace zelvra::passthrough
