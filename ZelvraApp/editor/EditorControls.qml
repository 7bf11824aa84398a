// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Editor

// How the shape looks, how long the picture freezes, and the buttons that end the editing.
Rectangle {
    id: controls

    required property Session session
    required property HighlightEditor editor

    implicitHeight: row.implicitHeight + 24
    color: Theme.bar

    component Divider: Separator {
        Layout.preferredHeight: 40
    }

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        // With the larger gap, the row would not fit at the window's minimum width.
        spacing: controls.width < 960 ? 13 : 20

        ColumnLayout {
            spacing: 4

            Caption {
                text: qsTr("Color")
            }
            ColorWell {
                objectName: "colorWell"
                pickerGap: 40 // off the captions, onto the frame
                Accessible.name: qsTr("Color")
                color: controls.editor.color
                onPicked: color => controls.editor.color = color
            }
        }
        Divider {}
        ColumnLayout {
            visible: controls.editor.kind === "circle"
            Layout.fillWidth: false
            Layout.preferredWidth: 180
            spacing: 4

            RowLayout {
                Caption {
                    Layout.fillWidth: true
                    text: qsTr("Size")
                }
                CaptionDigits {
                    objectName: "sizeText"
                    text: controls.editor.sizeText
                }
            }
            ValueSlider {
                objectName: "sizeSlider"
                Layout.fillWidth: true
                implicitHeight: Theme.controlHeight
                Accessible.name: qsTr("Size")
                from: 0.01
                to: 0.45
                value: controls.editor.radiusRatio
                onMoved: controls.editor.radiusRatio = value
            }
        }
        ColumnLayout {
            Layout.fillWidth: false
            Layout.preferredWidth: 130
            spacing: 4

            RowLayout {
                Caption {
                    Layout.fillWidth: true
                    text: qsTr("Stroke")
                }
                CaptionDigits {
                    objectName: "strokeText"
                    text: controls.editor.strokeText
                }
            }
            ValueSlider {
                objectName: "strokeSlider"
                Layout.fillWidth: true
                implicitHeight: Theme.controlHeight
                Accessible.name: qsTr("Stroke")
                from: 0.001
                to: 0.02
                value: controls.editor.strokeWidthRatio
                onMoved: controls.editor.strokeWidthRatio = value
            }
        }
        Divider {}
        ColumnLayout {
            spacing: 4

            Caption {
                text: qsTr("Freeze")
            }
            Stepper {
                objectName: "freezeStepper"
                implicitWidth: 150
                name: qsTr("Freeze")
                from: 0.5
                to: 10
                stepSize: 0.5
                value: controls.editor.durationSec
                text: controls.editor.durationText
                onModified: value => controls.editor.durationSec = value
            }
        }
        Item {
            Layout.fillWidth: true
        }
        PushButton {
            objectName: "cancelDraft"
            text: qsTr("Cancel")
            controlHeight: Theme.largeControlHeight
            onClicked: controls.session.cancelDraft()
        }
        PushButton {
            objectName: "commitDraft"
            text: controls.editor.commitText
            look: PushButton.Prominent
            controlHeight: Theme.largeControlHeight
            onClicked: controls.session.commitDraft()
        }
    }
}
