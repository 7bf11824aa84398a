// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Adds a tooltip to its content, which also shows while that is disabled.
Item {
    id: root

    property string tip
    readonly property alias hovered: hover.hovered
    default property alias content: holder.data

    implicitWidth: holder.childrenRect.width
    implicitHeight: holder.childrenRect.height

    Item {
        id: holder
        anchors.fill: parent
    }
    HoverHandler {
        id: hover
    }
    Loader {
        active: hover.hovered && root.tip !== ""
        sourceComponent: Item {
            Tip {
                parent: root
                text: root.tip
                visible: true
            }
        }
    }
}
