// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls

// A sign of the icon font, by its name there, tinted by `color`. It says nothing to a screen reader: whatever
// holds it has a name.
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
