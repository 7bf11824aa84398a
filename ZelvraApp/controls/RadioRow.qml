// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// One of several choices, with its text. Whoever uses it binds `checked` and stores the choice on `toggled`.
T.RadioButton {
    id: radio

    implicitWidth: leftPadding + label.implicitWidth
    implicitHeight: 24
    leftPadding: 24
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.RadioButton
    Accessible.name: text

    indicator: ControlSurface {
        control: radio
        y: (radio.height - height) / 2
        width: 16
        height: 16
        radius: width / 2
        color: radio.checked ? Theme.accentFill : pointerColor
        border.width: radio.checked ? 0 : 1

        Rectangle {
            anchors.centerIn: parent
            width: 6
            height: 6
            radius: width / 2
            color: Theme.accentInk
            visible: radio.checked
        }
    }
    contentItem: Body {
        id: label

        text: radio.text
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
