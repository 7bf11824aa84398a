// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Zelvra.Controls
import Zelvra.Shell

// One section of the help: icon and title, below them its items.
ColumnLayout {
    id: section

    required property var modelData

    objectName: "helpSection"
    Layout.fillWidth: true
    spacing: 12

    RowLayout {
        spacing: 10

        Icon {
            Layout.preferredWidth: 24
            name: section.modelData.icon
            size: 20
            color: Theme.accent
        }
        Title {
            text: section.modelData.title
            Accessible.role: Accessible.Heading
        }
    }
    Column {
        Layout.fillWidth: true
        Layout.leftMargin: 34
        spacing: 10

        Repeater {
            model: section.modelData.items
            Item {
                id: item

                required property string modelData

                width: parent.width
                height: words.implicitHeight

                TertiaryText {
                    text: "•"
                    Accessible.ignored: true
                }
                Body {
                    id: words

                    objectName: "helpItemText"
                    x: 16
                    width: parent.width - x
                    text: item.modelData
                    textFormat: Text.MarkdownText
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
