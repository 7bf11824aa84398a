// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Editor

// One button for each kind of shape.
Row {
    id: picker

    property string selected
    signal chosen(kind: string)

    spacing: 4
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Shape")

    component Tool: Tipped {
        id: tool

        required property string kind
        required property string iconName
        readonly property bool isSelected: picker.selected === kind

        implicitWidth: 42
        implicitHeight: 30

        T.AbstractButton {
            id: button

            objectName: "tool:" + tool.kind
            anchors.fill: parent
            focusPolicy: Qt.TabFocus
            hoverEnabled: true
            Accessible.role: Accessible.RadioButton
            Accessible.name: tool.tip
            Accessible.checkable: true
            Accessible.checked: tool.isSelected
            onClicked: picker.chosen(tool.kind)

            contentItem: Item {
                Icon {
                    anchors.centerIn: parent
                    name: tool.iconName
                    size: 18
                    color: tool.isSelected ? Theme.accent : Theme.secondary
                }
            }
            background: ControlSurface {
                control: button

                Rectangle {
                    anchors.fill: parent
                    visible: tool.isSelected
                    radius: parent.radius
                    color: Theme.over(Theme.accent, 0.16)
                    border.width: 1.5
                    border.color: Theme.accent
                }
            }
        }
    }

    Tool {
        kind: "circle"
        iconName: "panorama_fish_eye"
        tip: qsTr("Circle")
    }
    Tool {
        kind: "arrow"
        iconName: "north_east"
        tip: qsTr("Arrow")
    }
    Tool {
        kind: "rectangle"
        iconName: "crop_landscape"
        tip: qsTr("Rectangle")
    }
}
