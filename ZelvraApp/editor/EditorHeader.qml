// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Controls
import Zelvra.Editor

// What is edited, the kinds of shapes, and how to draw.
Rectangle {
    id: header

    required property HighlightEditor editor

    implicitHeight: row.implicitHeight + 24
    color: Theme.bar

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        spacing: 14

        ColumnLayout {
            spacing: 2

            Title {
                objectName: "editorTitle"
                text: header.editor.title
            }
            CaptionDigits {
                objectName: "editorMoment"
                text: header.editor.momentText
            }
        }
        Separator {
            Layout.preferredHeight: 32
        }
        ToolPicker {
            selected: header.editor.kind
            onChosen: kind => header.editor.kind = kind
        }
        Caption {
            objectName: "editorHint"
            Layout.fillWidth: true
            text: qsTr("Drag on the frame to draw a new shape. The colored handle moves it; the white arrows resize.")
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignRight
        }
    }
}
