// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// An icon of the icon font, by its name in that font. Screen readers ignore it: the control around it has a name.
Text {
    id: icon

    property string name
    property int size: 16

    text: icon.name
    color: Theme.primary
    font.family: Theme.iconFamily
    font.pixelSize: icon.size
    font.weight: Font.Normal
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    width: size
    height: size
    lineHeightMode: Text.FixedHeight
    lineHeight: size
    Accessible.ignored: true
}
