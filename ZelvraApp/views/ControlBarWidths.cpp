// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/views/ControlBarWidths.h"

#include <algorithm>
#include <array>

namespace zelvra {

namespace {

constexpr double margin = 16;
constexpr double gap = 12;
constexpr int gaps = 6; ///< between the seven parts that are always in the row
constexpr double smallGap = 6;
constexpr double hairline = 1;
constexpr double leastQueueText = 58;
constexpr double widestName = 140; ///< that is kept as long as anything else can be left out

} // namespace

double ControlBarWidths::queue() const {
    return queueButton > 0
               ? 2 * (queueButton + hairline) + std::max(leastQueueText, queueText) + 4 * smallGap + gap
               : 0;
}

double ControlBarWidths::titleRow() const {
    return time + (trimBadge > 0 ? smallGap + trimBadge : 0);
}

double ControlBarWidths::title() const {
    return std::max(titleRow(), std::min(fileName, widestName));
}

double ControlBarWidths::full() const {
    return 2 * margin + opening + queue() + title() + 2 * markingKey + addButton + addTime + markButton +
           exportButton + gaps * gap;
}

int ControlBarWidths::leftOut() const {
    const std::array savings{addTime,
                             exportButton - signButton,
                             markButton - signButton,
                             title() - titleRow(),
                             addButton - signButton,
                             trimBadge > 0 ? trimRange : 0};
    int count = 0;
    double width = full();
    for (const double saving : savings) {
        if (width <= available) {
            break;
        }
        width -= saving;
        ++count;
    }
    return count;
}

} // namespace zelvra
