// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The row of the timeline strip. It slides in when the strip has content, and out when it has none.
Rectangle {
    id: row

    required property Session session
    readonly property bool shown: session.timelineHasContent

    objectName: "timelineRow"
    height: 0
    visible: height > 0
    color: Theme.picture
    clip: true
    states: State {
        name: "shown"
        when: row.shown
        PropertyChanges {
            row.height: 44
            body.opacity: 1
        }
    }
    transitions: Transition {
        NumberAnimation {
            properties: "height, opacity"
            duration: Theme.motion
            easing.type: Easing.InOutQuad
        }
    }

    Item {
        id: body

        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 8
        height: 28
        opacity: 0

        SmallCaption {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Highlights")
            color: Theme.pictureInkFaint
            font.weight: Font.DemiBold
        }
        TimelineStrip {
            anchors.left: label.right
            anchors.leftMargin: 12
            anchors.right: parent.right
            height: parent.height
            session: row.session
        }
    }
}
