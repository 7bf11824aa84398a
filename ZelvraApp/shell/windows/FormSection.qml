// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Controls
import Zelvra.Shell

// A group of a form: its title, rows on a card, and a footer that explains them.
ColumnLayout {
    id: section

    property string title
    property string footer
    property string footerName
    default property alias rows: column.data

    spacing: 5

    Body {
        Layout.leftMargin: 10
        text: section.title
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: column.implicitHeight + 4
        radius: Theme.cardRadius
        color: Theme.card
        border.color: Theme.separator

        ColumnLayout {
            id: column

            anchors.fill: parent
            anchors.topMargin: 2
            anchors.bottomMargin: 2
            spacing: 0
        }
    }
    Caption {
        objectName: section.footerName
        Layout.fillWidth: true
        Layout.leftMargin: 10
        Layout.rightMargin: 10
        text: section.footer
        wrapMode: Text.Wrap
    }
}
