// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// Reports a finished export. Its button shows the last written file in the file manager.
Row {
    id: banner

    required property Session session
    readonly property url exported: session.lastExportURL
    // Keeps the name while the banner slides out.
    property string name

    onExportedChanged: {
        if (exported.toString() !== "")
            name = Texts.fileName(exported);
    }
    Component.onCompleted: exportedChanged()
    objectName: "exportBanner"
    spacing: 12

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        name: "check_circle"
        size: 24
        color: Theme.success
    }
    Column {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Headline {
            text: qsTr("Exported")
        }
        Caption {
            objectName: "exportedName"
            width: Math.min(implicitWidth, 360)
            text: banner.name
            elide: Text.ElideMiddle
        }
    }
    PushButton {
        objectName: "reveal"
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Reveal in Finder")
        onClicked: banner.session.revealLastExport()
    }
    PushButton {
        objectName: "dismissBanner"
        anchors.verticalCenter: parent.verticalCenter
        look: PushButton.Borderless
        iconName: "close"
        Accessible.name: qsTr("Dismiss")
        onClicked: banner.session.forgetLastExport()
    }
}
