// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// A small title in capitals over a list.
Body {
    color: Theme.tertiary
    font.pixelSize: Theme.caption
    font.capitalization: Font.AllUppercase
}
