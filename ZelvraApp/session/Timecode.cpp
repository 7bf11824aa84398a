// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/Timecode.h"

#include <cmath>

namespace zelvra {

QString timecode(const CMTime& time) {
    const double seconds = time.seconds();
    if (!std::isfinite(seconds)) {
        return QStringLiteral("--:--.--");
    }
    const auto minutes = static_cast<long long>(seconds / 60);
    return QString::asprintf("%02lld:%05.2f", minutes, std::fmod(seconds, 60));
}

} // namespace zelvra
