// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SamplePlan.h"

#include <algorithm>

namespace zelvra::passthrough {

bool SamplePlan::has(PlannedSample::Kind kind) const {
    return std::ranges::find(samples, kind, &PlannedSample::kind) != samples.end();
}

} // namespace zelvra::passthrough
