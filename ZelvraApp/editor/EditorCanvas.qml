// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Editor

// The frozen frame with the draft's shape over it: drag on the frame to draw, on a handle to move or reshape.
Rectangle {
    id: canvas

    required property HighlightEditor editor

    color: Theme.picture
    clip: true
    Accessible.role: Accessible.Canvas
    Accessible.name: qsTr("Frame")

    Binding {
        target: canvas.editor
        property: "canvasSize"
        value: Qt.size(canvas.width, canvas.height)
    }
    FramePicture {
        objectName: "framePicture"
        anchors.fill: parent
        draft: canvas.editor.draft
        imageRect: canvas.editor.imageRect
    }
    DragArea {
        objectName: "drawingSurface"
        x: canvas.editor.imageRect.x
        y: canvas.editor.imageRect.y
        width: canvas.editor.imageRect.width
        height: canvas.editor.imageRect.height
        editor: canvas.editor
        canvas: canvas
        grip: Grip.Picture
    }
    ShapeRenderer {
        anchors.fill: parent
        draft: canvas.editor.draft
        imageRect: canvas.editor.imageRect
    }
    ShapeHandle {
        objectName: "moveHandle"
        editor: canvas.editor
        canvas: canvas
        grip: Grip.Move
        at: canvas.editor.movePoint
        cursor: Qt.OpenHandCursor
        tip: qsTr("Drag to move the shape")
    }
    ShapeHandle {
        objectName: "end1Handle"
        visible: canvas.editor.hasEnd1
        editor: canvas.editor
        canvas: canvas
        grip: Grip.End1
        at: canvas.editor.end1Point
        cursor: Qt.CrossCursor
        tip: canvas.editor.endTip
    }
    ShapeHandle {
        objectName: "end2Handle"
        editor: canvas.editor
        canvas: canvas
        grip: Grip.End2
        at: canvas.editor.end2Point
        cursor: Qt.CrossCursor
        tip: canvas.editor.endTip
    }
}
