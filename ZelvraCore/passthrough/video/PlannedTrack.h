// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"
#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/video/SamplePlan.h"

namespace zelvra::passthrough {

/// The output's video track as far as plan and source decide it: times and header. Samples have their times,
/// in the order of the plan, but no bytes yet; the sample entry is left to the caller.
OutputTrack plannedTrack(const SamplePlan& plan, const isobmff::Track& source);

} // namespace zelvra::passthrough
