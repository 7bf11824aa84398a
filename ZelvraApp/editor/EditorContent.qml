// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Editor

// The editor's layout: header, canvas, controls.
FocusScope {
    id: content

    required property Session session
    required property HighlightEditor editor

    focus: true

    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: content.session.commitDraft()
    }
    Shortcut {
        sequences: [StandardKey.Cancel]
        onActivated: content.session.cancelDraft()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        EditorHeader {
            Layout.fillWidth: true
            editor: content.editor
        }
        EditorCanvas {
            objectName: "editorCanvas"
            Layout.fillWidth: true
            Layout.fillHeight: true
            editor: content.editor
        }
        Separator {
            Layout.fillWidth: true
        }
        EditorControls {
            Layout.fillWidth: true
            session: content.session
            editor: content.editor
        }
    }
}
