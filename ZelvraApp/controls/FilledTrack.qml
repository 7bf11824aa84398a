// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// A rounded bar that is filled from its left end. `filled` is a width.
Rectangle {
    id: track

    property real filled: 0
    property alias fillColor: fill.color

    height: 4
    radius: height / 2
    color: Theme.track

    Rectangle {
        id: fill

        width: track.filled
        height: track.height
        radius: Math.min(track.radius, width / 2)
        color: Theme.accent
    }
}
