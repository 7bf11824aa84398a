// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The title of a section or of a window's content.
Body {
    font.pixelSize: Theme.title
    font.weight: Font.DemiBold
}
