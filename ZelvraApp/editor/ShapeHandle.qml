// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Editor

// A handle of the shape. It is moved by dragging or by the arrow keys.
Item {
    id: handle

    required property HighlightEditor editor
    required property Item canvas
    required property int grip
    required property point at
    required property int cursor
    required property string tip

    // On whole pixels, so that it is drawn sharp.
    x: Math.round(at.x - width / 2)
    y: Math.round(at.y - height / 2)
    implicitWidth: view.implicitWidth
    implicitHeight: view.implicitHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.Indicator
    Accessible.name: tip
    Accessible.focusable: true
    Keys.onPressed: event => event.accepted = handle.editor.nudge(handle.grip, event.key, event.modifiers)

    HandleView {
        id: view

        grip: handle.grip
        color: handle.editor.color
        angle: handle.editor.angle
    }
    FocusRing {
        gap: -2
        radius: width / 2
        visible: handle.activeFocus
    }
    Tipped {
        anchors.fill: parent
        containmentMask: view
        tip: area.pressed ? "" : handle.tip

        DragArea {
            id: area

            anchors.fill: parent
            containmentMask: view
            hoverEnabled: true
            editor: handle.editor
            canvas: handle.canvas
            grip: handle.grip
            cursorShape: handle.cursor
        }
    }
}
