// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/SamplePlan.h"

namespace zelvra::passthrough {

void delayEdit(SamplePlan& plan, std::int64_t editStart) {
    const std::int64_t delay = editStart - plan.editStart;
    if (delay <= 0) {
        return;
    }
    // What is hidden before the edit stays at the front, where it is squeezed; all else moves.
    bool first = true;
    bool moving = false;
    for (PlannedSample& sample : plan.samples) {
        moving = moving || sample.shown;
        if (moving) {
            sample.decodeTime += first ? 0 : delay;
            sample.presentationTime += delay;
        }
        first = false;
    }
    plan.editStart = editStart;
    plan.mediaDuration += delay;
}

} // namespace zelvra::passthrough
