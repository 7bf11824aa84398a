// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// Shows a colour without opacity, and opens a picker for another one. Whoever uses it binds `color`, stores the
// colours that `picked` reports, and sets the name for screen readers.
T.AbstractButton {
    id: well

    property color color
    // Between the well and the picker.
    property int pickerGap: 8
    signal picked(color: color)

    implicitWidth: 60
    implicitHeight: Theme.controlHeight
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Button
    Keys.onReturnPressed: well.clicked()
    onClicked: {
        const scene = well.Window.contentItem;
        picker.above = well.mapToItem(scene, 0, 0).y > scene.height / 2;
        picker.choose(well.color);
    }

    background: ControlSurface {
        control: well
    }
    contentItem: Item {
        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: Theme.radius - 3
            color: Theme.over(well.color, 1)
            border.color: Theme.over(Theme.primary, 0.25)
        }
    }

    ColorPicker {
        id: picker

        property bool above: false

        y: above ? -height - well.pickerGap : well.height + well.pickerGap
        onPicked: color => well.picked(color)
    }
}
