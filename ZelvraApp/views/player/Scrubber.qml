// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// A line for the movie's whole time. While it is dragged, the picture follows by sync frames; at the end of the drag
// the exact frame is shown.
Item {
    id: scrubber

    required property Session session
    required property PlayerControls controls
    readonly property alias pressed: area.pressed

    implicitHeight: 24
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Position")

    ScrubberModel {
        id: line

        session: scrubber.session
        controls: scrubber.controls
        width: scrubber.width
    }

    FilledTrack {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: area.containsMouse || area.pressed ? 6 : 4
        color: Theme.pictureTrack
        filled: line.playheadX
        fillColor: Theme.pictureInk
    }
    Rectangle {
        x: line.playheadX - width / 2
        anchors.verticalCenter: parent.verticalCenter
        width: area.pressed ? 14 : 12
        height: width
        radius: width / 2
        color: Theme.pictureInk
    }
    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: mouse => line.pull(mouse.x)
        onPositionChanged: mouse => {
            if (pressed)
                line.pull(mouse.x);
        }
        onReleased: mouse => line.release(mouse.x)
        onCanceled: line.release(mouseX)
    }
    Rectangle {
        visible: area.containsMouse || area.pressed
        x: Math.max(0, Math.min(parent.width - width, area.mouseX - width / 2))
        y: -height - 4
        width: hoverTime.implicitWidth + 12
        height: 20
        radius: Theme.tagRadius
        color: Theme.pictureCard

        DigitText {
            id: hoverTime

            objectName: "hoverTime"
            anchors.centerIn: parent
            text: line.timecodeAt(area.mouseX)
            color: Theme.pictureInk
            font.pixelSize: Theme.smallCaption
        }
    }
}
