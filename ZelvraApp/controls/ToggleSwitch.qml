// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// Turns something on and off. Whoever uses it binds `checked`, stores the state on `toggled`, and sets the name for
// screen readers.
T.Switch {
    id: toggle

    implicitWidth: 38
    implicitHeight: 22
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.CheckBox
    Keys.onReturnPressed: toggle.click()

    indicator: Rectangle {
        width: 38
        height: 22
        radius: height / 2
        color: toggle.checked ? Theme.accentFill : toggle.hovered ? Theme.controlPressed : Theme.track
        border.width: toggle.checked ? 0 : 1
        border.color: Theme.controlBorder

        Rectangle {
            x: toggle.checked ? parent.width - width - 2 : 2
            y: 2
            width: 18
            height: 18
            radius: width / 2
            color: toggle.down ? Theme.knobPressed : Theme.knob
            border.width: toggle.checked ? 0 : 1
            border.color: Theme.knobBorder

            Behavior on x {
                NumberAnimation {
                    duration: Theme.quickMotion
                    easing.type: Easing.InOutQuad
                }
            }
        }
        FocusRing {
            visible: toggle.visualFocus
        }
    }
}
