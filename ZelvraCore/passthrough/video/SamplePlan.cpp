// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SamplePlan.h"

#include <algorithm>
#include <utility>

namespace zelvra::passthrough {

void appendTo(std::vector<PlannedSample>& samples, std::vector<PlannedSample> more) {
    if (samples.empty()) {
        samples = std::move(more);
    } else {
        samples.insert(samples.end(), more.begin(), more.end());
    }
}

bool SamplePlan::has(PlannedSample::Kind kind) const {
    return std::ranges::find(samples, kind, &PlannedSample::kind) != samples.end();
}

} // namespace zelvra::passthrough
