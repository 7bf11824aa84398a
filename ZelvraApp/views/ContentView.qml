// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Editor
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// What the main window shows: the landing screen or the open clip, the toolbar over it, and the questions
// and the editor that come over the window.
Item {
    id: content

    required property Session session
    required property Dialogs dialogs
    // The width that the user has given the sidebar.
    property real sidebarWidth: 300
    // Something else is up over the window: it takes no drops.
    property bool covered: false
    readonly property bool dialogUp: dialogs.anyUp || covered

    WindowToolbar {
        id: toolbar

        anchors.left: parent.left
        anchors.right: parent.right
        session: content.session
    }
    Loader {
        anchors.top: toolbar.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        focus: true
        sourceComponent: content.session.hasVideo ? main : landing
    }
    Component {
        id: landing

        EmptyLandingView {
            session: content.session
            takesDrops: !content.dialogUp
        }
    }
    Component {
        id: main

        MainView {
            session: content.session
            takesDrops: !content.dialogUp
            sidebarWidth: content.sidebarWidth
            onSidebarDragged: width => content.sidebarWidth = width
            onDropped: url => content.dialogs.confirmClose(() => content.session.open(url))
        }
    }
    QuestionHost {
        session: content.session
        dialogs: content.dialogs
        available: !content.session.hasDraft
    }
    HighlightEditorView {
        session: content.session
        over: QuestionHost {
            session: content.session
            dialogs: content.dialogs
        }
    }
    Connections {
        target: content.session

        // Not every desktop gives the keyboard back to the main window when the editor goes.
        function onHasDraftChanged() {
            if (!content.session.hasDraft)
                content.Window.window.requestActivate();
        }
    }
}
