// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// Text that explains something more important.
Body {
    color: Theme.secondary
}
