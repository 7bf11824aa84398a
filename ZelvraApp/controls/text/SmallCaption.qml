// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The smallest text in rows and on the timeline.
Body {
    color: Theme.secondary
    font.pixelSize: Theme.smallCaption
}
