// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// A menu as wide as its widest item.
T.Menu {
    id: menu

    implicitWidth: leftPadding + rightPadding + Theme.menuWidth(menu)
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 5
    margins: 4
    overlap: 2
    delegate: AppMenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: menu.T.Overlay.overlay ? contentHeight + menu.topPadding + menu.bottomPadding > menu.T.Overlay.overlay.height : false
        clip: interactive
        currentIndex: menu.currentIndex
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.topMargin: 2
            anchors.bottomMargin: -3
            anchors.leftMargin: -1
            anchors.rightMargin: -1
            radius: Theme.cardRadius
            color: Theme.dropShadow
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.cardRadius - 1
            color: Theme.card
            border.width: 1
            border.color: Theme.separator
        }
    }
    T.Overlay.modal: null
    T.Overlay.modeless: null
}
