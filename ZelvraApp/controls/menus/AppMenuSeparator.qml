// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// Separates the groups of a menu.
T.MenuSeparator {
    implicitHeight: 11
    verticalPadding: 5
    horizontalPadding: 9
    contentItem: Separator {}
}
