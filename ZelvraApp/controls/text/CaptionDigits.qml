// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// A number or time in the style of a caption.
DigitText {
    color: Theme.secondary
    font.pixelSize: Theme.caption
}
