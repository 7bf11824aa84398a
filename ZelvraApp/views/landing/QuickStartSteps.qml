// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// Three lines that explain how to get from a clip to a finished movie.
Column {
    spacing: 7

    component QuickStartRow: Row {
        id: row

        required property int number
        required property string text

        spacing: 9

        Rectangle {
            width: 16
            height: 16
            radius: width / 2
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.quaternary

            SmallCaption {
                anchors.centerIn: parent
                text: row.number
                font.weight: Font.Bold
            }
        }
        Body {
            anchors.verticalCenter: parent.verticalCenter
            text: row.text
        }
    }

    QuickStartRow {
        number: 1
        text: qsTr("Open a clip — or just drop one here")
    }
    QuickStartRow {
        number: 2
        text: qsTr("Pause where it matters, press N to add a highlight")
    }
    QuickStartRow {
        number: 3
        text: qsTr("Press ⌘E to export the finished clip")
    }
}
