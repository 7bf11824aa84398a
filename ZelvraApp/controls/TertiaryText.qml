// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Text that can be overlooked.
Body {
    color: Theme.tertiary
}
