// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// A sign with its title, and a tooltip also while it is disabled.
Tipped {
    id: root

    property alias text: button.text
    property alias iconName: button.iconName
    signal clicked

    // Disables the button alone, so that the tooltip stays.
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
