// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// A field for one line of text.
T.TextField {
    id: box

    implicitWidth: 160
    implicitHeight: Theme.controlHeight
    leftPadding: 7
    rightPadding: 7
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    color: Theme.primary
    selectionColor: Theme.accentFill
    selectedTextColor: Theme.accentInk
    placeholderTextColor: Theme.tertiary
    font.family: Theme.family
    font.pixelSize: Theme.body
    opacity: enabled ? 1 : 0.4

    background: Rectangle {
        radius: Theme.radius
        color: Theme.field
        border.color: Theme.controlBorder

        FocusRing {
            visible: box.activeFocus
            gap: 1
        }
    }
}
