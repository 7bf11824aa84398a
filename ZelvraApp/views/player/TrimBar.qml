// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The trim editor: the movie as a film strip. A yellow frame with handles marks the part to keep.
Item {
    id: bar

    required property Session session
    required property TrimView trim

    implicitHeight: 118

    component EndHandle: Rectangle {
        id: handle

        property string tip
        required property int end

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
        Keys.onPressed: event => event.accepted = bar.trim.nudge(handle.end, event.key, event.modifiers)

        Rectangle {
            anchors.centerIn: parent
            width: 2
            height: 16
            radius: width / 2
            color: Theme.trimHandleInk
        }
        MouseArea {
            anchors.fill: parent
            anchors.margins: -4
            cursorShape: Qt.SizeHorCursor
            hoverEnabled: true
            preventStealing: true
            onPressed: mouse => {
                handle.forceActiveFocus();
                bar.trim.beginDrag(handle.end, mapToItem(strip, mouse.x, 0).x);
            }
            onPositionChanged: mouse => {
                if (pressed)
                    bar.trim.dragTo(mapToItem(strip, mouse.x, 0).x);
            }
            onReleased: bar.trim.endDrag()
            onCanceled: bar.trim.endDrag()
        }
    }

    PictureCard {
        anchors.fill: parent
    }
    Binding {
        target: bar.trim
        property: "width"
        value: strip.width
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
            width: bar.trim.inX
            height: parent.height
            color: Theme.shade
        }
        Rectangle {
            x: bar.trim.outX
            width: parent.width - x
            height: parent.height
            color: Theme.shade
        }
        Rectangle {
            x: bar.trim.inX
            y: -4
            width: bar.trim.outX - bar.trim.inX
            height: parent.height + 8
            color: "transparent"
            border.width: 4
            border.color: Theme.trimHandle
        }
        Rectangle {
            x: bar.trim.playheadX - width / 2
            y: -2
            width: 2
            height: parent.height + 4
            color: Theme.pictureInk
        }
        EndHandle {
            objectName: "trimInHandle"
            x: bar.trim.inX - width
            end: TrimView.In
            tip: qsTr("Start of the trim")
        }
        EndHandle {
            objectName: "trimOutHandle"
            x: bar.trim.outX
            end: TrimView.Out
            tip: qsTr("End of the trim")
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
