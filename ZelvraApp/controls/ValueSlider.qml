// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Controls

// A slider over a continuous range; arrow keys move it by a hundredth. Whoever uses it binds `value`, stores the value
// on `moved`, and sets the name for screen readers.
T.Slider {
    id: slider

    // The step is set for this move only, because it would also make dragging coarse.
    function moveByKey(by: int) {
        stepSize = (to - from) / 100;
        if (by > 0)
            increase();
        else
            decrease();
        stepSize = 0;
        moved();
    }

    implicitWidth: 160
    implicitHeight: 20
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Keys.onLeftPressed: slider.moveByKey(-1)
    Keys.onRightPressed: slider.moveByKey(1)

    background: FilledTrack {
        y: (slider.height - height) / 2
        width: slider.width
        filled: slider.handle.x + slider.handle.width / 2
    }
    handle: Rectangle {
        x: slider.visualPosition * (slider.availableWidth - width)
        y: (slider.height - height) / 2
        width: 16
        height: 16
        radius: width / 2
        color: slider.pressed ? Theme.knobPressed : Theme.knob
        border.width: 1
        border.color: Theme.knobBorder

        FocusRing {
            visible: slider.visualFocus
        }
    }
}
