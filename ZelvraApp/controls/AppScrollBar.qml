// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// Shows the position in content that scrolls, and changes it.
T.ScrollBar {
    id: bar

    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    minimumSize: 0.08
    visible: size < 1
    contentItem: Rectangle {
        radius: Math.min(width, height) / 2
        color: Theme.primary
        opacity: bar.pressed ? 0.5 : bar.hovered ? 0.4 : 0.22
    }
}
