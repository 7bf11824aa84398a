// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// The menu bar of a window. Alt and the letter marked with & opens a menu.
T.MenuBar {
    id: bar

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: 30
    leftPadding: 6
    rightPadding: 6
    topPadding: 3
    bottomPadding: 3
    Accessible.role: Accessible.MenuBar

    delegate: T.MenuBarItem {
        id: item

        objectName: "menu:" + label.text
        implicitWidth: label.implicitWidth + leftPadding + rightPadding
        implicitHeight: 24
        leftPadding: 9
        rightPadding: 9
        Accessible.role: Accessible.MenuItem
        Accessible.name: label.text
        contentItem: Body {
            id: label

            text: item.text.replace("&", "")
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        background: Rectangle {
            radius: Theme.itemRadius
            color: Theme.hover
            visible: item.highlighted || item.hovered || item.down
        }
    }
    contentItem: Row {
        Repeater {
            model: bar.contentModel
        }
    }
    background: Rectangle {
        color: Theme.bar
    }
}
