// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Small text: what belongs to a control or to the line above.
Body {
    color: Theme.secondary
    font.pixelSize: Theme.caption
}
