// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// How far an export has come.
Row {
    id: progress

    required property Session session
    readonly property real fraction: session.state.exportProgress

    objectName: "exportProgress"
    spacing: 12
    Accessible.role: Accessible.ProgressBar
    Accessible.name: "Exporting"
    Accessible.description: percentage.text

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 260
        height: 6
        radius: 3
        color: Theme.quaternary

        Rectangle {
            objectName: "exportProgressFill"
            width: parent.width * Math.max(0, Math.min(1, progress.fraction))
            height: parent.height
            radius: Math.min(3, width / 2)
            color: Theme.accentFill
        }
    }
    CaptionDigits {
        id: percentage

        objectName: "exportPercentage"
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        text: Texts.percentage(progress.fraction)
    }
}
