// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// An outline that shows that files can be dropped here.
DashedOutline {
    property bool shown: false

    radius: Theme.landingRadius
    lineWidth: 3
    dash: 8
    gap: 6
    opacity: shown ? 1 : 0
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.quickMotion
        }
    }
}
