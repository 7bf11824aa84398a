// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Shell

// A file or folder in the panel.
T.AbstractButton {
    id: row

    required property int index
    required property var modelData
    property string fileIcon: "movie"
    readonly property bool chosen: ListView.isCurrentItem
    readonly property color ink: chosen ? Theme.accentInk : Theme.primary
    readonly property color paleInk: chosen ? Theme.accentInk : Theme.tertiary

    component Detail: Caption {
        color: row.paleInk
        horizontalAlignment: Text.AlignRight
    }

    objectName: "file:" + modelData.name
    implicitHeight: 28
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    leftPadding: 8
    rightPadding: 12
    Accessible.role: Accessible.ListItem
    Accessible.name: modelData.name

    contentItem: RowLayout {
        spacing: 8

        Icon {
            name: row.modelData.isFolder ? "folder" : row.fileIcon
            color: row.chosen ? Theme.accentInk : row.modelData.isFolder ? Theme.accent : Theme.secondary
        }
        Body {
            Layout.fillWidth: true
            text: row.modelData.name
            color: row.ink
            elide: Text.ElideMiddle
        }
        Detail {
            visible: !row.modelData.isFolder
            text: row.modelData.sizeText
        }
        Detail {
            Layout.preferredWidth: 120
            text: row.modelData.timeText
        }
    }
    background: Rectangle {
        radius: Theme.itemRadius
        color: row.chosen ? Theme.accentFill : Theme.hover
        visible: row.chosen || row.hovered
    }
}
