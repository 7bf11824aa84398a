// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/StyleTexts.h"

namespace zelvra {

QString radiusText(double radiusRatio) {
    return QString::asprintf("%.1f%%", radiusRatio * 100);
}

QString strokeText(double strokeWidthRatio) {
    return QString::asprintf("%.2f%%", strokeWidthRatio * 100);
}

QString durationText(double seconds) {
    return QString::asprintf("%.1fs", seconds);
}

} // namespace zelvra
