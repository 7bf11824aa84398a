// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The bar at the top of the main window.
Rectangle {
    id: toolbar

    required property Session session

    implicitHeight: 44
    color: Theme.bar

    Row {
        anchors.verticalCenter: parent.verticalCenter
        anchors.left: parent.left
        anchors.leftMargin: 10
        spacing: 4

        ToolbarButton {
            objectName: "toolbarOpenVideo"
            text: qsTr("Open Video")
            iconName: "note_add"
            tip: qsTr("Open Video… (⌘O)")
            onClicked: toolbar.session.requestOpenVideo()
        }
        ToolbarButton {
            objectName: "toolbarOpenFolder"
            text: qsTr("Open Folder")
            iconName: "create_new_folder"
            tip: qsTr("Open Folder of Clips… (⇧⌘O)")
            onClicked: toolbar.session.requestOpenFolder()
        }
        ToolbarButton {
            objectName: "toolbarClose"
            text: qsTr("Close Clip")
            iconName: "highlight_off"
            tip: qsTr("Close current clip (⌘W)")
            available: toolbar.session.hasVideo
            onClicked: toolbar.session.requestCloseVideo()
        }
        ToolbarButton {
            objectName: "toolbarTrim"
            text: qsTr("Trim")
            iconName: "content_cut"
            tip: qsTr("Trim clip (⇧⌘T)")
            available: toolbar.session.hasVideo
            onClicked: toolbar.session.beginTrim()
        }
    }
    Separator {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
