// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// A small key with one letter.
Tipped {
    id: root

    required property string letter
    property bool available: true
    signal clicked

    PushButton {
        id: button

        objectName: root.objectName + "Button"
        controlHeight: Theme.smallControlHeight + 2
        enabled: root.available
        Accessible.name: root.letter
        Accessible.description: root.tip
        onClicked: root.clicked()
        contentItem: Body {
            text: root.letter
            color: button.ink
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            font.family: Theme.monospaceFamily
            font.weight: Font.DemiBold
        }
        implicitWidth: 28
    }
}
