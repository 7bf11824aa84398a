// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The size of a text in the boldest style of a push button.
TextMetrics {
    font.family: Theme.family
    font.pixelSize: Theme.body
    font.weight: Font.DemiBold
}
