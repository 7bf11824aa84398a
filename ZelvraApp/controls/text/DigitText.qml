// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Text whose digits all take the same width, so that a running time does not jitter.
Item {
    id: root

    property string text
    // Each digit alone, and the text between digits.
    readonly property var runs: text.match(/\d|\D+/g) ?? []
    property color color: Theme.primary
    property alias font: digit.font
    property int alignment: Qt.AlignLeft

    implicitWidth: row.implicitWidth
    implicitHeight: digit.implicitHeight
    baselineOffset: digit.baselineOffset
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    Body {
        id: digit

        text: "0"
        visible: false
    }
    Row {
        id: row

        anchors.verticalCenter: parent.verticalCenter
        anchors.right: root.alignment === Qt.AlignRight ? root.right : undefined
        Repeater {
            model: root.runs.length
            Text {
                required property int index
                
                text: root.runs[index] ?? ""
                width: text >= "0" && text <= "9" ? digit.implicitWidth : implicitWidth
                horizontalAlignment: Text.AlignHCenter
                color: root.color
                font: digit.font
                Accessible.ignored: true
            }
        }
    }
}
