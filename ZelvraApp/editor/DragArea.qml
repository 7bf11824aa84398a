// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Editor

// Passes drags to the editor, in the canvas's coordinates.
MouseArea {
    id: area

    required property HighlightEditor editor
    required property Item canvas
    required property int grip

    preventStealing: true
    onPressed: mouse => area.editor.beginDrag(area.grip, area.mapToItem(area.canvas, mouse.x, mouse.y))
    onPositionChanged: mouse => {
        if (area.pressed)
            area.editor.dragTo(area.mapToItem(area.canvas, mouse.x, mouse.y));
    }
    onReleased: area.editor.endDrag()
    onCanceled: area.editor.endDrag()
}
