// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// A button with a text, an icon, or both. It takes the focus by Tab only, so that Space still controls the player.
T.AbstractButton {
    id: button

    enum Look { Regular, Prominent, Borderless }

    property int look: PushButton.Regular
    property string iconName
    property int iconSize: 16
    property color tint: button.borderless ? Theme.secondary : Theme.primary
    property int controlHeight: Theme.controlHeight
    // For a text with a running time.
    property bool tabularDigits: false

    // The width of the button with a text of that width, and with the icon alone.
    function widthAround(textWidth: real): real {
        return textWidth + iconSize + gap + 2 * textPadding;
    }
    readonly property real signWidth: Math.max(controlHeight, iconSize + 10)

    readonly property int gap: 6
    readonly property int textPadding: controlHeight >= Theme.largeControlHeight ? 17 : 14
    readonly property bool prominent: look === PushButton.Prominent
    readonly property bool borderless: look === PushButton.Borderless
    readonly property color ink: prominent ? Theme.accentInk : tint

    implicitWidth: Math.max(controlHeight, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: controlHeight
    leftPadding: text === "" ? 5 : textPadding
    rightPadding: leftPadding
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Button
    Accessible.name: text
    Keys.onReturnPressed: button.clicked()

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row

            anchors.centerIn: parent
            spacing: button.gap

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.iconName !== ""
                name: button.iconName
                size: button.iconSize
                color: button.ink
            }
            Body {
                id: label

                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: button.tabularDigits ? "" : button.text
                color: button.ink
                font.pixelSize: button.controlHeight <= Theme.smallControlHeight ? Theme.caption : Theme.body
                font.weight: button.prominent ? Font.DemiBold : Font.Medium
                Accessible.ignored: true
            }
            Loader {
                anchors.verticalCenter: parent.verticalCenter
                active: button.tabularDigits && button.text !== ""
                visible: active
                sourceComponent: DigitText {
                    text: button.text
                    color: button.ink
                    font: label.font
                    Accessible.ignored: true
                }
            }
        }
    }
    background: ControlSurface {
        control: button
        restColor: button.prominent ? Theme.accentFill : button.borderless ? "transparent" : Theme.control
        hoverColor: button.prominent ? Theme.accentFillHover : button.borderless ? Theme.hover : Theme.controlHover
        pressedColor: button.prominent ? Theme.accentFillPressed : button.borderless ? Theme.hover : Theme.controlPressed
        border.width: button.prominent || button.borderless ? 0 : 1
    }
}
