// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Running text. The other styles of text are made from it.
Text {
    color: Theme.primary
    font.family: Theme.family
    font.pixelSize: Theme.body
}
