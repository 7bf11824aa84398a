// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The five most recently opened clips and folders.
Column {
    id: recents

    required property Session session
    readonly property alias count: rows.count

    width: 340
    spacing: 4

    Overline {
        leftPadding: 8
        text: qsTr("Recent")
        font.weight: Font.DemiBold
        font.letterSpacing: 0.4
    }
    Repeater {
        id: rows

        model: recents.session.recentRows
        RecentRow {
            required property int index

            objectName: "recent" + index
            width: recents.width
            visible: index < 5
            onClicked: recents.session.openRecent(path)
        }
    }
}
