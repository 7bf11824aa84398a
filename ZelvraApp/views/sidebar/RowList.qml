// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Views

// A list of rows that have an id: arrow keys go through it, Return opens the current row, Delete removes it.
ListView {
    id: list

    signal opened(id: string)
    signal removed(id: string)

    clip: true
    topMargin: 6
    bottomMargin: 6
    leftMargin: 8
    rightMargin: 8
    spacing: 1
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: count > 0
    highlightFollowsCurrentItem: true
    highlightMoveDuration: 0
    highlightResizeDuration: 0
    Accessible.role: Accessible.List
    Accessible.focusable: true
    Keys.onReturnPressed: list.opened(list.currentItem?.id ?? "")
    Keys.onEnterPressed: list.opened(list.currentItem?.id ?? "")
    Keys.onDeletePressed: list.removed(list.currentItem?.id ?? "")
    T.ScrollBar.vertical: AppScrollBar {}
    highlight: Item {
        z: 2

        FocusRing {
            gap: 0
            radius: Theme.radius
            visible: list.activeFocus
        }
    }
}
