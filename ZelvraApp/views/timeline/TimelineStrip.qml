// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The clip's timeline: marked clips, the trim with its edges, highlights and the playhead.
Item {
    id: root

    required property Session session

    objectName: "timelineStrip"
    Accessible.role: Accessible.Chart
    Accessible.name: qsTr("Timeline")

    component StretchTime: DigitText {
        color: Theme.pictureInkFaint
        font.pixelSize: Theme.tinyCaption
        font.weight: Font.Medium
    }

    TimelineStripModel {
        id: strip

        session: root.session
        width: root.width
        height: root.height
    }
    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: 4
        radius: height / 2
        color: Theme.stripTrack
    }
    TimelineMarks {
        id: clips

        strip: strip
        kind: TimelineMarks.Clips
        x: -overhang
        width: parent.width + 2 * overhang
        height: parent.height
    }
    Rectangle {
        objectName: "trimBand"
        anchors.verticalCenter: parent.verticalCenter
        visible: strip.showsTrim
        x: strip.trimX
        width: strip.trimWidth
        height: 6
        radius: Math.min(3, width / 2)
        color: Theme.over(Theme.vivid, 0.55)
    }
    TimelineHandle {
        objectName: "trimStartHandle"
        Accessible.name: qsTr("Clip start")
        centerX: strip.startHandleX
        visible: strip.showsHandles
        Keys.onPressed: event => event.accepted = strip.nudgeStart(event.key, event.modifiers, event.isAutoRepeat)
    }
    TimelineHandle {
        objectName: "trimEndHandle"
        Accessible.name: qsTr("Clip end")
        centerX: strip.endHandleX
        visible: strip.showsHandles
        Keys.onPressed: event => event.accepted = strip.nudgeEnd(event.key, event.modifiers, event.isAutoRepeat)
    }
    TimelineMarks {
        id: dots

        objectName: "timelineDots"
        strip: strip
        kind: TimelineMarks.Highlights
        x: -overhang
        width: parent.width + 2 * overhang
        height: parent.height
        showsCurrentDot: activeFocus
        activeFocusOnTab: root.session.highlightCount > 0
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Highlights on the timeline")
        Accessible.description: strip.currentDotTip
        Accessible.focusable: true
        onActiveFocusChanged: strip.goToDot(0)
        Keys.onLeftPressed: strip.goToDot(-1)
        Keys.onRightPressed: strip.goToDot(1)
        Keys.onReturnPressed: strip.editCurrentDot()
        Keys.onEnterPressed: strip.editCurrentDot()
    }
    Rectangle {
        objectName: "playhead"
        anchors.verticalCenter: parent.verticalCenter
        visible: strip.showsPlayhead
        x: strip.playheadX - width / 2
        width: 2
        height: parent.height - 6
        color: Theme.pictureInkBright
    }
    StretchTime {
        objectName: "stripStart"
        anchors.left: parent.left
        anchors.top: parent.top
        visible: strip.isZoomed
        text: strip.startLabel
    }
    StretchTime {
        objectName: "stripEnd"
        anchors.right: parent.right
        anchors.top: parent.top
        visible: strip.isZoomed
        text: strip.endLabel
    }
    MouseArea {
        id: pointer

        readonly property real margin: dots.overhang

        x: -margin
        width: parent.width + 2 * margin
        height: parent.height
        hoverEnabled: true
        preventStealing: true
        cursorShape: strip.overHandle || strip.draggingEdge ? Qt.SplitHCursor : strip.overDot ? Qt.PointingHandCursor : Qt.ArrowCursor
        onPositionChanged: event => {
            if (pressed)
                strip.move(event.x - margin);
            else
                strip.hover(event.x - margin, event.y);
        }
        onEntered: strip.hover(mouseX - margin, mouseY)
        onExited: strip.leave()
        onPressed: event => strip.press(event.x - margin, event.y)
        onReleased: event => strip.release(event.x - margin, event.y)
        onCanceled: strip.cancel()

        Tip {
            x: strip.tipX + pointer.margin - width / 2
            y: -height - 4
            text: strip.tip
            visible: strip.tip !== "" && pointer.containsMouse && !pointer.pressed
        }
    }
}
