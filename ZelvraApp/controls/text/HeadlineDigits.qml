// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// How many entries a list has, beside its headline.
DigitText {
    color: Theme.secondary
    font.pixelSize: Theme.headline
}
