#include "ZelvraApp/platform/SeekAim.h"

#include <algorithm>

namespace zelvra {

SeekAim aimAt(const FrameIndex& frames, std::size_t index) {
    constexpr double tolerance = 0.005;
    const FrameIndex::Frame frame = frames.frame(index);
    const double time = frame.time.seconds();
    if (index == 0) {
        return {time, 0};
    }
    const double gap = time - frames.frame(index - 1).time.seconds();
    const double offset = std::max(0.0, tolerance - gap / 2);
    return {time + offset, offset};
}

} // namespace zelvra
