// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls

// Chooses a colour with the pointer, by its hexadecimal digits, or from a few that stand out on a pitch. `picked`
// reports each change at once; Cancel and Esc report the first colour again.
T.Popup {
    id: picker

    signal picked(color: color)

    // Stored separately, because a gray has no hue and black has no saturation.
    property real hue: 0
    property real saturation: 0
    property real brightness: 0
    property color before

    readonly property color color: Qt.hsva(hue, saturation, brightness, 1)

    function take(color: color) {
        if (color.hsvSaturation > 0 && color.hsvValue > 0)
            hue = Math.max(0, color.hsvHue);
        if (color.hsvValue > 0)
            saturation = color.hsvSaturation;
        brightness = color.hsvValue;
    }
    function choose(color: color) {
        before = color;
        take(color);
        open();
    }
    function pick(hue: real, saturation: real, brightness: real) {
        picker.hue = Math.min(1, Math.max(0, hue));
        picker.saturation = Math.min(1, Math.max(0, saturation));
        picker.brightness = Math.min(1, Math.max(0, brightness));
        picked(color);
    }
    function cancel() {
        picked(before);
        close();
    }

    component Knob: Rectangle {
        height: width
        radius: width / 2
        border.width: 2
        border.color: Theme.pickerKnobRing

        Rectangle {
            anchors.fill: parent
            anchors.margins: -1
            radius: width / 2
            color: "transparent"
            border.color: Theme.pickerKnobOutline
        }
    }
    component HueStop: GradientStop {
        required property real stopHue

        position: stopHue
        color: Qt.hsva(stopHue, 1, 1, 1)
    }

    margins: 8
    padding: 12
    width: 284
    implicitHeight: contentItem.implicitHeight + 2 * padding
    modal: true
    dim: false
    focus: true
    closePolicy: T.Popup.CloseOnPressOutside
    onOpened: column.forceActiveFocus()

    background: Card {
        color: Theme.card

        Rectangle {
            z: -1
            anchors.fill: parent
            anchors.margins: -4
            anchors.topMargin: -1
            radius: Theme.cardRadius + 4
            color: Theme.faintShadow
        }
    }
    contentItem: ColumnLayout {
        id: column

        spacing: 10
        Accessible.role: Accessible.Dialog
        Accessible.name: qsTr("Color")
        Keys.onEscapePressed: picker.cancel()
        Keys.onReturnPressed: picker.close()
        Keys.onEnterPressed: picker.close()

        Rectangle {
            id: field

            objectName: "colorField"
            Layout.fillWidth: true
            implicitHeight: 140
            radius: Theme.radius
            activeFocusOnTab: true
            Accessible.role: Accessible.Graphic
            Accessible.name: qsTr("Saturation and brightness")
            Accessible.focusable: true
            Keys.onLeftPressed: picker.pick(picker.hue, picker.saturation - 0.02, picker.brightness)
            Keys.onRightPressed: picker.pick(picker.hue, picker.saturation + 0.02, picker.brightness)
            Keys.onUpPressed: picker.pick(picker.hue, picker.saturation, picker.brightness + 0.02)
            Keys.onDownPressed: picker.pick(picker.hue, picker.saturation, picker.brightness - 0.02)
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop {
                    position: 0
                    color: Qt.hsva(0, 0, 1, 1)
                }
                GradientStop {
                    position: 1
                    color: Qt.hsva(picker.hue, 1, 1, 1)
                }
            }

            Rectangle {
                anchors.fill: parent
                radius: parent.radius
                gradient: Gradient {
                    GradientStop {
                        position: 0
                        color: Qt.hsva(0, 0, 0, 0)
                    }
                    GradientStop {
                        position: 1
                        color: Qt.hsva(0, 0, 0, 1)
                    }
                }
            }
            FocusRing {
                visible: field.activeFocus
            }
            Knob {
                x: picker.saturation * field.width - width / 2
                y: (1 - picker.brightness) * field.height - height / 2
                width: 16
                color: picker.color
            }
            MouseArea {
                anchors.fill: parent
                preventStealing: true
                cursorShape: Qt.CrossCursor
                onPressed: mouse => {
                    field.forceActiveFocus(Qt.MouseFocusReason);
                    choose(mouse);
                }
                onPositionChanged: mouse => choose(mouse)

                function choose(mouse: var) {
                    picker.pick(picker.hue, mouse.x / width, 1 - mouse.y / height);
                }
            }
        }
        ValueSlider {
            id: hueSlider

            objectName: "hueSlider"
            Layout.fillWidth: true
            implicitHeight: 18
            value: picker.hue
            Accessible.name: qsTr("Hue")
            onMoved: picker.pick(value, picker.saturation, picker.brightness)

            background: Rectangle {
                y: 3
                width: hueSlider.width
                height: 12
                radius: height / 2
                border.color: Theme.over(Theme.primary, 0.2)
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    HueStop {
                        stopHue: 0
                    }
                    HueStop {
                        stopHue: 1 / 6
                    }
                    HueStop {
                        stopHue: 2 / 6
                    }
                    HueStop {
                        stopHue: 3 / 6
                    }
                    HueStop {
                        stopHue: 4 / 6
                    }
                    HueStop {
                        stopHue: 5 / 6
                    }
                    HueStop {
                        stopHue: 1
                    }
                }
            }
            handle: Knob {
                x: hueSlider.visualPosition * (hueSlider.width - width)
                width: 18
                color: Qt.hsva(picker.hue, 1, 1, 1)

                FocusRing {
                    visible: hueSlider.visualFocus
                }
            }
        }
        RowLayout {
            spacing: 4

            Repeater {
                model: Theme.highlightColors
                T.AbstractButton {
                    id: swatch

                    required property string modelData
                    readonly property bool chosen: picker.color.toString().toUpperCase() === modelData

                    objectName: "swatch:" + modelData
                    Layout.fillWidth: true
                    implicitHeight: 20
                    focusPolicy: Qt.TabFocus
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: modelData
                    Accessible.checked: chosen
                    onClicked: {
                        picker.take(Qt.color(modelData));
                        picker.picked(picker.color);
                    }
                    background: Item {
                        Rectangle {
                            anchors.centerIn: parent
                            width: 20
                            height: 20
                            radius: width / 2
                            color: swatch.modelData
                            border.color: Theme.over(Theme.primary, 0.3)

                            FocusRing {
                                gap: 2
                                visible: swatch.visualFocus || swatch.chosen
                                border.color: swatch.visualFocus ? Theme.focusRing : Theme.primary
                            }
                        }
                    }
                }
            }
        }
        RowLayout {
            spacing: 8

            TextInputBox {
                id: hex

                objectName: "colorHex"
                implicitWidth: 84
                Accessible.name: qsTr("Hexadecimal color")
                validator: RegularExpressionValidator {
                    regularExpression: /#?[0-9a-fA-F]{6}/
                }
                onTextEdited: {
                    if (acceptableInput) {
                        picker.take(Qt.color(text.startsWith("#") ? text : "#" + text));
                        picker.picked(picker.color);
                    }
                }
                Binding on text {
                    when: !hex.activeFocus
                    value: picker.color.toString().toUpperCase()
                }
            }
            Item {
                Layout.fillWidth: true
            }
            PushButton {
                objectName: "colorCancel"
                text: qsTr("Cancel")
                onClicked: picker.cancel()
            }
            PushButton {
                objectName: "colorDone"
                text: qsTr("Done")
                look: PushButton.Prominent
                onClicked: picker.close()
            }
        }
    }
}
