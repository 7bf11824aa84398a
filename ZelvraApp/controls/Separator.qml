// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// A line of one pixel: horizontal, or vertical if it is given a height.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.separator
}
