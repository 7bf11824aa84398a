// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// The surface of a button. Its colour follows the pointer, and a ring shows the keyboard's focus.
Rectangle {
    id: surface

    required property T.AbstractButton control
    property color restColor: Theme.control
    property color hoverColor: Theme.controlHover
    property color pressedColor: Theme.controlPressed
    readonly property color pointerColor: control.down ? pressedColor : control.hovered ? hoverColor : restColor

    radius: Theme.radius
    color: pointerColor
    border.color: Theme.controlBorder

    FocusRing {
        visible: surface.control.visualFocus
    }
}
