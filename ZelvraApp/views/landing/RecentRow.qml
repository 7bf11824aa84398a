// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Views

// A recently opened clip or folder, and the folder that contains it.
T.AbstractButton {
    id: row

    required property string path
    required property string name
    required property bool isFolder

    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 8
    rightPadding: 8
    topPadding: 4
    bottomPadding: 4
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: path
    Keys.onReturnPressed: row.clicked()

    background: Rectangle {
        radius: Theme.radius
        color: Theme.over(Theme.primary, row.hovered ? 0.07 : 0)

        FocusRing {
            visible: row.visualFocus
            gap: 0
        }
        Tipped {
            anchors.fill: parent
            tip: row.path
        }
    }
    contentItem: RowLayout {
        spacing: 8

        Icon {
            Layout.preferredWidth: 18
            name: row.isFolder ? "folder_open" : "theaters"
            size: 17
            color: Theme.secondary
        }
        Body {
            objectName: "recentName"
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(implicitWidth)
            text: row.name
            elide: Text.ElideMiddle
        }
        TertiaryText {
            objectName: "recentFolder"
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(implicitWidth)
            text: Texts.folderName(row.path)
            elide: Text.ElideRight
        }
        Item {
            Layout.fillWidth: true
            Layout.preferredWidth: 0
        }
    }
}
