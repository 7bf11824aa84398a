// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The movie's time as a line to be pulled along. While it is pulled the picture follows by sync frames; where
// it comes to rest the exact frame is shown.
Item {
    id: scrubber

    required property Session session
    required property PlayerControls controls
    readonly property alias pressed: area.pressed

    readonly property double fraction: area.pressed ? fractionAt(area.mouseX) : session.duration > 0 ? Math.min(1, session.currentSeconds / session.duration) : 0

    function fractionAt(x: double): double {
        return Math.max(0, Math.min(1, x / width));
    }
    function secondsAt(x: double): double {
        return fractionAt(x) * session.duration;
    }

    implicitHeight: 24
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Position")

    FilledTrack {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: area.containsMouse || area.pressed ? 6 : 4
        color: Theme.pictureTrack
        filled: scrubber.fraction * width
        fillColor: Theme.pictureInk
    }
    Rectangle {
        x: scrubber.fraction * parent.width - width / 2
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
        onPressed: mouse => scrubber.controls.scrub(scrubber.secondsAt(mouse.x))
        onPositionChanged: mouse => {
            if (pressed)
                scrubber.controls.scrub(scrubber.secondsAt(mouse.x));
        }
        onReleased: mouse => scrubber.controls.endScrub(scrubber.secondsAt(mouse.x))
        onCanceled: scrubber.controls.endScrub(scrubber.secondsAt(mouseX))
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
            text: scrubber.session.timecodeOf(scrubber.secondsAt(area.mouseX))
            color: Theme.pictureInk
            font.pixelSize: Theme.smallCaption
        }
    }
}
