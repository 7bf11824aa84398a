// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Editor
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// During the preview of a freeze: the shape of its highlight over the picture, and a badge.
Item {
    id: overlay

    required property Session session

    objectName: "previewOverlay"
    visible: session.isPreviewing

    ShapeRenderer {
        objectName: "previewShape"
        anchors.fill: parent
        highlight: overlay.session.previewHighlight
        pictureSize: overlay.session.displaySize
    }
    Rectangle {
        objectName: "previewBadge"
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: 10
        width: badge.implicitWidth + 18
        height: badge.implicitHeight + 8
        radius: height / 2
        color: Theme.pictureBadge

        Row {
            id: badge

            anchors.centerIn: parent
            spacing: 5

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "pause_circle_filled"
                size: 15
                color: Theme.pictureInkBright
            }
            Caption {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Freeze preview")
                color: Theme.pictureInkBright
            }
        }
    }
}
