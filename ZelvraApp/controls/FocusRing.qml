// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The ring around a control that has the keyboard focus. Its radius is its parent's plus the gap.
Rectangle {
    property int gap: 2

    anchors.fill: parent
    anchors.margins: -gap
    radius: (parent?.radius ?? 0) + gap
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
}
