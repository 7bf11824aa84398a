// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/CMTimeRange.h"

namespace zelvra {

CMTimeRange CMTimeRange::fromStartToEnd(const CMTime& start, const CMTime& end) {
    return {start, end - start};
}

} // namespace zelvra
