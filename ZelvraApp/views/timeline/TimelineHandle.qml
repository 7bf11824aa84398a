// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// The handle at an edge of the trim. The strip handles the dragging; arrow keys nudge the edge.
Rectangle {
    id: handle

    required property real centerX

    x: centerX - width / 2
    anchors.verticalCenter: parent?.verticalCenter
    width: 5
    height: (parent?.height ?? 0) - 4
    radius: Theme.edgeRadius
    color: Theme.vivid
    border.width: 1
    border.color: Theme.stripHandleBorder
    activeFocusOnTab: true
    Accessible.role: Accessible.Slider
    Accessible.focusable: true

    FocusRing {
        visible: handle.activeFocus
    }
}
