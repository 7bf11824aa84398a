// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Shows that work is in progress. It appears after a short delay, so quick work does not show it.
Item {
    id: spinner

    property bool running: false
    property color color: Theme.secondary
    property int phase: 0

    implicitWidth: 28
    implicitHeight: 28
    opacity: 0
    visible: opacity > 0
    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("Busy")
    states: State {
        name: "shown"
        when: spinner.running
        PropertyChanges {
            spinner.opacity: 1
        }
    }
    transitions: [
        Transition {
            to: "shown"
            SequentialAnimation {
                PauseAnimation {
                    duration: Theme.spinnerDelay
                }
                NumberAnimation {
                    property: "opacity"
                    duration: Theme.quickMotion
                }
            }
        },
        Transition {
            from: "shown"
            NumberAnimation {
                property: "opacity"
                duration: Theme.quickMotion
            }
        }
    ]

    NumberAnimation on phase {
        running: spinner.visible
        loops: Animation.Infinite
        from: 0
        to: 8
        duration: Theme.spinnerTurn
    }
    Repeater {
        model: 8
        Rectangle {
            required property int index

            x: spinner.width / 2 - width / 2
            width: spinner.width / 11
            height: spinner.width / 3.6
            radius: width / 2
            color: spinner.color
            antialiasing: true
            opacity: 1 - ((spinner.phase - index + 8) % 8) * 0.11
            transformOrigin: Item.Bottom
            transform: Rotation {
                origin.x: spinner.width / 22
                origin.y: spinner.height / 2
                angle: index * 45
            }
        }
    }
}
