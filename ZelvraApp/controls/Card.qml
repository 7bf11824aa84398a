// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The surface of dialogs and messages over the window.
Rectangle {
    color: Theme.over(Theme.card, 0.94)
    radius: Theme.cardRadius
    border.color: Theme.separator
    border.width: 1
}
