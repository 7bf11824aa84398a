// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Views

// A recently opened clip or folder, the folder that contains it, and what is remembered of the clip.
T.AbstractButton {
    id: row

    required property string path
    required property string name
    required property bool isFolder
    required property bool hasWork
    required property int highlightCount
    required property int markedClipCount
    required property bool isExported
    required property bool wasInterrupted
    readonly property string details: hasWork ? path + "\n" + Texts.workDetails(highlightCount, markedClipCount, isExported, wasInterrupted) : path

    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 8
    rightPadding: 8
    topPadding: 4
    bottomPadding: 4
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: details
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
            tip: row.details
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
        Loader {
            active: row.hasWork
            visible: active
            sourceComponent: WorkSigns {
                highlightCount: row.highlightCount
                markedClipCount: row.markedClipCount
                isExported: row.isExported
                wasInterrupted: row.wasInterrupted
            }
        }
    }
}
