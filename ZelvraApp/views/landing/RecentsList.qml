// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The five clips and folders that were opened last.
Column {
    id: recents

    required property Session session
    readonly property alias count: rows.count

    width: 340
    spacing: 4

    Text {
        leftPadding: 8
        text: "Recent"
        color: Theme.tertiary
        font.family: Theme.family
        font.pixelSize: Theme.caption
        font.weight: Font.DemiBold
        font.capitalization: Font.AllUppercase
        font.letterSpacing: 0.4
    }
    Repeater {
        id: rows

        model: recents.session.state.recentRows
        RecentRow {
            required property int index

            objectName: "recent" + index
            width: recents.width
            visible: index < 5
            onClicked: recents.session.openRecent(path)
        }
    }
}
