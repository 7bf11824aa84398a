// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// One marked clip: its number, its range and the number of its highlights.
T.AbstractButton {
    id: row

    required property Session session
    required property int index
    required property string id
    required property double start
    required property double end
    required property int highlightCount
    readonly property bool isBeingEdited: session.editingClipID === id

    objectName: "markedClipRow"
    width: ListView.view ? ListView.view.width - ListView.view.leftMargin - ListView.view.rightMargin : implicitWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 4
    rightPadding: 4
    topPadding: 2
    bottomPadding: 2
    hoverEnabled: true
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: number.text + ", " + range.text + ", " + count.text
    onClicked: {
        if (!row.isBeingEdited)
            row.session.editMarkedClip(row.id);
    }

    background: Rectangle {
        objectName: "markedClipBackground"
        radius: Theme.radius
        color: row.isBeingEdited ? Theme.over(Theme.accent, 0.12) : row.hovered ? Theme.hover : "transparent"

        Tipped {
            anchors.fill: parent
            tip: removeArea.hovered ? "" : Texts.clipRowTip(row.isBeingEdited)
        }
    }
    contentItem: RowLayout {
        spacing: 8

        CaptionDigits {
            id: number

            objectName: "clipNumber"
            Layout.preferredWidth: 24
            text: Texts.clipNumber(row.index + 1)
            color: row.isBeingEdited ? Theme.accent : Theme.tertiary
            font.weight: Font.DemiBold
        }
        Column {
            Layout.fillWidth: true

            CaptionDigits {
                id: range

                objectName: "clipRange"
                text: row.session.rangeText(row.start, row.end)
                color: Theme.primary
            }
            SmallCaption {
                id: count

                objectName: "clipHighlights"
                text: Texts.highlightCount(row.highlightCount)
            }
        }
        Icon {
            objectName: "clipPencil"
            visible: row.isBeingEdited
            name: "edit"
            size: 14
            color: Theme.accent
        }
        Tipped {
            id: removeArea

            tip: qsTr("Remove from list")

            PushButton {
                objectName: "removeClip"
                look: PushButton.Borderless
                iconName: "delete_outline"
                iconSize: 17
                focusPolicy: Qt.NoFocus
                Accessible.name: qsTr("Remove from list")
                onClicked: row.session.unmark(row.id)
            }
        }
    }
}
