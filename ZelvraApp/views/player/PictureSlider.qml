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

    background: Rectangle {
        y: (slider.height - height) / 2
        width: slider.width
        height: 4
        radius: 2
        color: Theme.pictureTrack

        Rectangle {
            width: slider.visualPosition * parent.width
            height: parent.height
            radius: 2
            color: Theme.pictureInk
        }
    }
    handle: Rectangle {
        x: slider.visualPosition * (slider.width - width)
        y: (slider.height - height) / 2
        width: 12
        height: 12
        radius: 6
        color: Theme.pictureInk
        border.width: slider.visualFocus ? 2 : 0
        border.color: Theme.vivid
    }
}
