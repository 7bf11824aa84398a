// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Views

// A thin slider over a picture.
T.Slider {
    id: slider

    implicitHeight: 20
    implicitWidth: 80
    focusPolicy: Qt.TabFocus

    background: FilledTrack {
        y: (slider.height - height) / 2
        width: slider.width
        color: Theme.pictureTrack
        filled: slider.visualPosition * width
        fillColor: Theme.pictureInk
    }
    handle: Rectangle {
        x: slider.visualPosition * (slider.width - width)
        y: (slider.height - height) / 2
        width: 12
        height: 12
        radius: width / 2
        color: Theme.pictureInk
        border.width: slider.visualFocus ? 2 : 0
        border.color: Theme.vivid
    }
}
