// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Editor

// The window around the editor. Closing it cancels the draft.
Window {
    id: window

    required property Session session
    required property Window owner
    property Component over: null

    objectName: "editorWindow"
    title: editor.title
    transientParent: owner
    modality: Qt.WindowModal
    flags: Qt.Dialog
    minimumWidth: 880
    minimumHeight: 640
    color: Theme.bar
    visible: true
    onClosing: close => {
        close.accepted = false;
        window.session.cancelDraft();
    }
    Component.onCompleted: {
        width = Math.max(minimumWidth, Math.min(owner.width * 0.9, Screen.desktopAvailableWidth));
        height = Math.max(minimumHeight, Math.min(owner.height * 0.95, Screen.desktopAvailableHeight));
        x = owner.x + (owner.width - width) / 2;
        y = owner.y + (owner.height - height) / 2;
    }

    HighlightEditor {
        id: editor

        session: window.session
    }
    EditorContent {
        anchors.fill: parent
        session: window.session
        editor: editor
    }
    Loader {
        sourceComponent: window.over
    }
}
