// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The progress of the running export.
Row {
    id: progress

    required property Session session
    readonly property real fraction: session.exportProgress

    objectName: "exportProgress"
    spacing: 12
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Exporting")
    Accessible.description: percentage.text

    FilledTrack {
        objectName: "exportProgressTrack"
        anchors.verticalCenter: parent.verticalCenter
        width: 260
        height: 6
        color: Theme.quaternary
        filled: width * Math.max(0, Math.min(1, progress.fraction))
        fillColor: Theme.accentFill
    }
    CaptionDigits {
        id: percentage

        objectName: "exportPercentage"
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        text: Texts.percentage(progress.fraction)
    }
}
