// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The title of a list, a card or a question.
Body {
    font.pixelSize: Theme.headline
    font.weight: Font.DemiBold
}
