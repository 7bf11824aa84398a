// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// A number that is changed in steps. Whoever uses it binds `value` and `text`, and stores the value that `modified`
// reports. Arrow keys step; Home and End go to the first and the last value.
FocusScope {
    id: stepper

    property real from: 0
    property real to: 10
    property real stepSize: 1
    property real value: 0
    property string text
    property string name
    signal modified(value: real)

    function set(wanted: real) {
        const next = Math.min(to, Math.max(from, wanted));
        if (next !== value)
            modified(next);
    }
    function increase() {
        set(value + stepSize);
    }
    function decrease() {
        set(value - stepSize);
    }

    implicitWidth: 150
    implicitHeight: Theme.controlHeight
    opacity: enabled ? 1 : 0.4
    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.control
        border.color: Theme.controlBorder
    }
    Item {
        id: keys

        property real value: stepper.value
        property real minimumValue: stepper.from
        property real maximumValue: stepper.to
        property real stepSize: stepper.stepSize
        property bool byKeyboard: false

        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.SpinBox
        Accessible.name: stepper.name
        Accessible.description: stepper.text
        Accessible.focusable: true
        Accessible.onIncreaseAction: stepper.increase()
        Accessible.onDecreaseAction: stepper.decrease()
        Keys.onUpPressed: stepper.increase()
        Keys.onRightPressed: stepper.increase()
        Keys.onDownPressed: stepper.decrease()
        Keys.onLeftPressed: stepper.decrease()
        Keys.onPressed: event => {
            event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
            if (event.accepted)
                stepper.set(event.key === Qt.Key_Home ? stepper.from : stepper.to);
        }

        DigitText {
            objectName: stepper.objectName + "Text"
            anchors.centerIn: parent
            text: stepper.text
            Accessible.ignored: true
        }
    }
    FocusRing {
        visible: keys.activeFocus
        radius: Theme.radius + gap
    }

    component Step: T.AbstractButton {
        id: step

        property alias iconName: sign.name

        width: 34
        height: parent.height
        focusPolicy: Qt.NoFocus
        hoverEnabled: true
        autoRepeat: true
        Accessible.ignored: true

        background: ControlSurface {
            control: step
            restColor: "transparent"
            x: 1
            y: 1
            width: parent.width - 2
            height: parent.height - 2
            radius: Theme.radius - 1
            border.width: 0
        }
        contentItem: Item {
            Icon {
                id: sign
                anchors.centerIn: parent
                color: step.enabled ? Theme.primary : Theme.tertiary
                opacity: step.enabled ? 1 : 0.5
            }
        }
    }

    Step {
        objectName: stepper.objectName + "Less"
        iconName: "remove"
        enabled: stepper.value > stepper.from
        onClicked: stepper.decrease()

        Separator {
            anchors.right: parent.right
            y: 1
            height: parent.height - 2
            color: Theme.controlBorder
        }
    }
    Step {
        objectName: stepper.objectName + "More"
        anchors.right: parent.right
        iconName: "add"
        enabled: stepper.value < stepper.to
        onClicked: stepper.increase()

        Separator {
            y: 1
            height: parent.height - 2
            color: Theme.controlBorder
        }
    }
}
