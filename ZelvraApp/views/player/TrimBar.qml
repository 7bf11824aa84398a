// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The trim editor: the movie as a film strip, the part to keep framed in yellow, its ends to be dragged.
Item {
    id: bar

    required property Session session
    required property TrimView trim

    readonly property double inX: session.duration > 0 ? trim.inSeconds / session.duration * strip.width : 0
    readonly property double outX: session.duration > 0 ? trim.outSeconds / session.duration * strip.width : 0

    implicitHeight: 118

    component EndHandle: Rectangle {
        id: handle

        property string tip
        property double seconds
        signal dragged(seconds: double)

        width: 14
        height: strip.height + 8
        y: -4
        radius: Theme.tagRadius
        color: Theme.trimHandle
        activeFocusOnTab: true
        border.width: activeFocus ? 2 : 0
        border.color: Theme.focusRing
        Accessible.role: Accessible.Slider
        Accessible.name: handle.tip
        Keys.onPressed: event => {
            const step = event.key === Qt.Key_Left ? -1 : event.key === Qt.Key_Right ? 1 : 0;
            if (step !== 0) {
                handle.dragged(handle.seconds + step * (event.modifiers & Qt.ShiftModifier ? 1 : 0.1));
                bar.trim.endDrag();
                event.accepted = true;
            }
        }

        Rectangle {
            anchors.centerIn: parent
            width: 2
            height: 16
            radius: width / 2
            color: Theme.trimHandleInk
        }
        MouseArea {
            property double offset: 0

            anchors.fill: parent
            anchors.margins: -4
            cursorShape: Qt.SizeHorCursor
            hoverEnabled: true
            preventStealing: true
            // Where the handle was taken stays under the pointer.
            onPressed: mouse => {
                handle.forceActiveFocus();
                offset = mapToItem(strip, mouse.x, 0).x - handle.seconds / bar.session.duration * strip.width;
            }
            onPositionChanged: mouse => {
                if (pressed)
                    handle.dragged((mapToItem(strip, mouse.x, 0).x - offset) / strip.width * bar.session.duration);
            }
            onReleased: bar.trim.endDrag()
            onCanceled: bar.trim.endDrag()
        }
    }

    PictureCard {
        anchors.fill: parent
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
    }
    FilmStrip {
        id: strip

        objectName: "filmStrip"
        x: 28
        y: 14
        width: parent.width - 2 * x
        height: 48
        session: bar.session

        Rectangle {
            width: bar.inX
            height: parent.height
            color: Theme.shade
        }
        Rectangle {
            x: bar.outX
            width: parent.width - x
            height: parent.height
            color: Theme.shade
        }
        Rectangle {
            x: bar.inX
            y: -4
            width: bar.outX - bar.inX
            height: parent.height + 8
            color: "transparent"
            border.width: 4
            border.color: Theme.trimHandle
        }
        Rectangle {
            x: bar.session.duration > 0 ? bar.session.currentSeconds / bar.session.duration * parent.width - 1 : 0
            y: -2
            width: 2
            height: parent.height + 4
            color: Theme.pictureInk
        }
        EndHandle {
            objectName: "trimInHandle"
            x: bar.inX - width
            seconds: bar.trim.inSeconds
            tip: qsTr("Start of the trim")
            onDragged: seconds => bar.trim.dragIn(seconds)
        }
        EndHandle {
            objectName: "trimOutHandle"
            x: bar.outX
            seconds: bar.trim.outSeconds
            tip: qsTr("End of the trim")
            onDragged: seconds => bar.trim.dragOut(seconds)
        }
    }
    RowLayout {
        anchors.left: strip.left
        anchors.right: strip.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        spacing: 8

        DigitText {
            objectName: "trimRangeText"
            text: bar.trim.inText + " – " + bar.trim.outText
            color: Theme.pictureInk
        }
        DigitText {
            objectName: "trimLengthText"
            text: bar.trim.lengthText
            color: Theme.pictureInkDim
        }
        Item {
            Layout.fillWidth: true
        }
        PushButton {
            objectName: "trimCancelButton"
            text: qsTr("Cancel")
            controlHeight: Theme.largeControlHeight
            onClicked: bar.trim.cancel()
        }
        PushButton {
            objectName: "trimConfirmButton"
            text: qsTr("Trim")
            look: PushButton.Prominent
            controlHeight: Theme.largeControlHeight
            onClicked: bar.trim.confirm()
        }
    }
}
