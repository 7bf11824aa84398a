// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The place in the folder that is worked through. A click lists the folder's clips with what is remembered of each.
Tipped {
    id: root

    required property Session session
    property int leastWidth: 0
    readonly property alias textWidth: label.implicitWidth

    tip: menu.visible ? "" : qsTr("Clips of this folder")

    T.AbstractButton {
        id: button

        objectName: "queueButton"
        implicitWidth: Math.max(root.leastWidth, label.implicitWidth)
        implicitHeight: Theme.controlHeight
        focusPolicy: Qt.TabFocus
        hoverEnabled: true
        Accessible.role: Accessible.ButtonMenu
        Accessible.name: label.text
        Accessible.description: qsTr("Clips of this folder")
        Keys.onReturnPressed: button.clicked()
        onClicked: menu.open()

        contentItem: Item {
            CaptionDigits {
                id: label

                objectName: "queueLabel"
                anchors.centerIn: parent
                text: root.session.queueLabel
                Accessible.ignored: true
            }
        }
        background: ControlSurface {
            control: button
            restColor: "transparent"
            hoverColor: Theme.hover
            pressedColor: Theme.hover
            border.width: 0
        }

        AppMenu {
            id: menu

            y: -height - 4

            Instantiator {
                model: root.session.queueRows
                delegate: ClipMenuItem {
                    required property int index
                    required property bool isOpen

                    objectName: "queueItem"
                    iconName: isOpen ? "play_arrow" : "movie"
                    onTriggered: root.session.openQueued(index)
                }
                onObjectAdded: (index, item) => menu.insertItem(index, item)
                onObjectRemoved: (index, item) => menu.removeItem(item)
            }
        }
    }
}
