// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Editor
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The content of the main window: the toolbar, below it the landing screen or the open clip, and over them the messages
// about an export, the questions and the editor.
Item {
    id: content

    required property Session session
    required property Dialogs dialogs
    // The width that the user has given the sidebar.
    property real sidebarWidth: 300
    // Something else covers the window, so it takes no drops.
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
            coveredTop: exported.shown ? exported.height + 12 : 0
            onDropped: url => content.session.open(url)
        }
    }
    SlidingCard {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
        edge: Qt.BottomEdge
        shown: content.session.isExporting

        ExportProgressBar {
            session: content.session
        }
    }
    SlidingCard {
        id: exported

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: toolbar.bottom
        anchors.topMargin: 12
        shown: !content.session.isExporting && content.session.lastExportURL.toString() !== ""

        ExportSuccessBanner {
            session: content.session
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

        // Not every desktop returns the keyboard focus to the main window when the editor closes.
        function onHasDraftChanged() {
            if (!content.session.hasDraft)
                content.Window.window.requestActivate();
        }
    }
}
