// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// A button with an icon and a title. Its tooltip also shows while the button is disabled.
Tipped {
    id: root

    property alias text: button.text
    property alias iconName: button.iconName
    signal clicked

    // False disables the button, but not the tooltip.
    property bool available: true

    PushButton {
        id: button

        objectName: root.objectName + "Button"
        look: PushButton.Borderless
        iconSize: 20
        controlHeight: Theme.largeControlHeight
        enabled: root.available
        onClicked: root.clicked()
    }
}
