// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The ring around a control that has the keyboard. Its parent's radius plus the gap is its own.
Rectangle {
    property int gap: 2

    anchors.fill: parent
    anchors.margins: -gap
    radius: (parent?.radius ?? 0) + gap
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
}
