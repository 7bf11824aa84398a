#include "ZelvraCore/records/CMTimeRange.h"

namespace zelvra {

CMTimeRange CMTimeRange::fromStartToEnd(const CMTime& start, const CMTime& end) {
    return {start, end - start};
}

} // namespace zelvra
