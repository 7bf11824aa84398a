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
            text: "Open Video"
            iconName: "note_add"
            tip: "Open Video… (⌘O)"
            onClicked: toolbar.session.requestOpenVideo()
        }
        ToolbarButton {
            objectName: "toolbarOpenFolder"
            text: "Open Folder"
            iconName: "create_new_folder"
            tip: "Open Folder of Clips… (⇧⌘O)"
            onClicked: toolbar.session.requestOpenFolder()
        }
        ToolbarButton {
            objectName: "toolbarClose"
            text: "Close Clip"
            iconName: "highlight_off"
            tip: "Close current clip (⌘W)"
            available: toolbar.session.hasVideo
            onClicked: toolbar.session.requestCloseVideo()
        }
        ToolbarButton {
            objectName: "toolbarTrim"
            text: "Trim"
            iconName: "content_cut"
            tip: "Trim clip (⇧⌘T)"
            available: toolbar.session.hasVideo
            onClicked: toolbar.session.beginTrim()
        }
    }
    Separator {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
