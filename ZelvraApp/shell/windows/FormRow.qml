// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Controls
import Zelvra.Shell

// A row of a form: its label on the left, its controls on the right.
Item {
    id: row

    property string label
    property bool first: false
    property int labelAlignment: Qt.AlignVCenter
    default property alias controls: holder.data

    Layout.fillWidth: true
    implicitHeight: Math.max(35, holder.implicitHeight + 9)

    Separator {
        visible: !row.first
        x: 10
        width: parent.width - 20
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        spacing: 12

        Body {
            Layout.alignment: row.labelAlignment
            Layout.topMargin: row.labelAlignment === Qt.AlignTop ? 8 : 0
            text: row.label
        }
        RowLayout {
            id: holder

            Layout.fillWidth: true
            Layout.alignment: Qt.AlignRight
            layoutDirection: Qt.LeftToRight
            spacing: 8
        }
    }
}
