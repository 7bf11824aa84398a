// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Zelvra.Controls

// The look of a tooltip.
ToolTip {
    id: tip

    delay: Theme.tipDelay
    padding: 6
    contentItem: Caption {
        objectName: "tipText"
        text: tip.text
        color: Theme.primary
    }
    background: Rectangle {
        color: Theme.card
        border.color: Theme.separator
        radius: Theme.tagRadius
    }
}
