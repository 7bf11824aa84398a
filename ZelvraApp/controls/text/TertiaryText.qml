// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// The least important text.
Body {
    color: Theme.tertiary
}
