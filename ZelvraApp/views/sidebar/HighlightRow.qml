// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// One highlight in the sidebar: its shape in its colour, its time and the length of its freeze.
T.AbstractButton {
    id: row

    required property Session session
    required property string id
    required property double moment
    required property double duration
    required property string kind
    required property color color
    readonly property string kindName: ({
            circle: qsTr("circle"),
            arrow: qsTr("arrow"),
            rectangle: qsTr("rectangle")
        })[row.kind] ?? ""

    objectName: "highlightRow"
    width: ListView.view ? ListView.view.width - ListView.view.leftMargin - ListView.view.rightMargin : implicitWidth
    implicitHeight: 44
    leftPadding: 8
    rightPadding: 4
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: time.text + ", " + row.kindName + ", " + freeze.text
    onClicked: row.session.editHighlight(row.id)

    background: Rectangle {
        radius: Theme.radius
        color: row.hovered ? Theme.hover : "transparent"

        Tipped {
            anchors.fill: parent
            tip: trashArea.hovered ? "" : qsTr("Click to edit, or use the trash to delete")
        }
    }
    contentItem: RowLayout {
        spacing: 10

        Icon {
            Layout.preferredWidth: 20
            name: ({
                    circle: "radio_button_unchecked",
                    arrow: "north_east",
                    rectangle: "crop_16_9"
                })[row.kind] ?? ""
            size: 20
            color: row.color
        }
        Column {
            Layout.fillWidth: true
            spacing: 2

            DigitText {
                id: time

                objectName: "highlightTime"
                text: row.session.timecodeOf(row.moment)
            }
            Caption {
                id: freeze

                objectName: "highlightFreeze"
                text: Texts.freezeLength(row.duration)
            }
        }
        Tipped {
            id: trashArea

            tip: qsTr("Delete highlight")

            PushButton {
                objectName: "deleteHighlight"
                look: PushButton.Borderless
                iconName: "delete_outline"
                iconSize: 18
                focusPolicy: Qt.NoFocus
                Accessible.name: qsTr("Delete highlight")
                onClicked: row.session.deleteHighlight(row.id)
            }
        }
    }
}
