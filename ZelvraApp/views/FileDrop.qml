// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Views

// Takes files that are dropped from other programs, and uses the first one. `isTargeted` is true while they are over it.
DropArea {
    id: area

    readonly property bool isTargeted: containsDrag
    signal offered(url: url)

    onEntered: drag => drag.accepted = drag.hasUrls
    onDropped: drop => {
        if (drop.urls.length > 0) {
            drop.accept(Qt.CopyAction);
            area.offered(drop.urls[0]);
        }
    }
}
