// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views
import Zelvra.Shell

// The menus of the main window. Each command is one action, for its menu item and its shortcut.
AppMenuBar {
    id: bar

    required property Session session
    required property Shell shell
    readonly property MenuState can: bar.shell.menu
    signal settingsAsked
    signal helpAsked
    signal aboutAsked

    AppMenu {
        title: qsTr("&File")

        T.Action {
            objectName: "openVideoItem"
            text: qsTr("Open Video…")
            shortcut: "Ctrl+O"
            enabled: bar.can.canAct
            onTriggered: bar.session.presentOpenVideoPanel()
        }
        T.Action {
            objectName: "openFolderItem"
            text: qsTr("Open Folder of Clips…")
            shortcut: "Ctrl+Shift+O"
            enabled: bar.can.canAct
            onTriggered: bar.session.presentOpenFolderPanel()
        }
        AppMenu {
            id: recents

            objectName: "openRecentMenu"
            title: qsTr("Open Recent")

            Instantiator {
                model: bar.session.recentRows
                delegate: ClipMenuItem {
                    required property string path
                    required property bool isFolder

                    objectName: "recentItem"
                    iconName: isFolder ? "folder" : "movie"
                    onTriggered: bar.session.openRecent(path)
                }
                onObjectAdded: (index, item) => recents.insertItem(index, item)
                onObjectRemoved: (index, item) => recents.removeItem(item)
            }
            AppMenuSeparator {}
            T.Action {
                objectName: "clearRecentsItem"
                text: qsTr("Clear Menu")
                enabled: bar.can.canClearRecents
                onTriggered: Qt.callLater(bar.session.clearRecents)
            }
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "closeClipItem"
            text: qsTr("Close Clip")
            shortcut: "Ctrl+W"
            enabled: bar.can.canCloseClip
            onTriggered: bar.session.requestCloseVideo()
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "exportItem"
            text: bar.can.exportTitle
            shortcut: "Ctrl+E"
            enabled: bar.can.canExport
            onTriggered: bar.session.exportMovies()
        }
        T.Action {
            objectName: "saveAnnotationsItem"
            text: qsTr("Save Annotations…")
            shortcut: "Ctrl+S"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.saveAnnotations()
        }
        T.Action {
            objectName: "openAnnotationsItem"
            text: qsTr("Open Annotations…")
            shortcut: "Ctrl+I"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.openAnnotations()
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "quitItem"
            text: qsTr("Quit")
            shortcut: "Ctrl+Q"
            enabled: bar.can.canAct
            onTriggered: bar.shell.leaving.request()
        }
    }
    AppMenu {
        title: qsTr("&Edit")

        T.Action {
            objectName: "undoItem"
            text: qsTr("Undo")
            shortcut: "Ctrl+Z"
            enabled: bar.can.canUndo
            onTriggered: bar.session.undo()
        }
        T.Action {
            objectName: "redoItem"
            text: qsTr("Redo")
            shortcut: "Ctrl+Shift+Z"
            enabled: bar.can.canRedo
            onTriggered: bar.session.redo()
        }
        T.Action {
            objectName: "restoreItem"
            text: qsTr("Restore Unfinished Work")
            shortcut: "R"
            enabled: bar.can.canRestore
            onTriggered: bar.session.restoreLeftWork()
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "settingsItem"
            text: qsTr("Settings…")
            shortcut: "Ctrl+,"
            enabled: bar.can.canAct
            onTriggered: bar.settingsAsked()
        }
    }
    AppMenu {
        title: qsTr("&View")

        T.Action {
            objectName: "previewItem"
            text: qsTr("Preview Highlights During Playback")
            checkable: true
            checked: bar.shell.settings.previewEnabled
            enabled: bar.can.canAct
            onToggled: bar.shell.settings.previewEnabled = checked
        }
    }
    AppMenu {
        title: qsTr("&Clip")

        T.Action {
            objectName: "addHighlightItem"
            text: qsTr("Add Highlight")
            shortcut: "N"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.addHighlightAtCurrentTime()
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "trimItem"
            text: qsTr("Trim Clip…")
            shortcut: "Ctrl+Shift+T"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.beginTrim()
        }
        T.Action {
            objectName: "clearTrimItem"
            text: qsTr("Clear Trim")
            enabled: bar.can.canClearTrim
            onTriggered: bar.session.clearTrim()
        }
        T.Action {
            objectName: "startClipItem"
            text: qsTr("Start Clip Here")
            shortcut: "I"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.markInPoint()
        }
        T.Action {
            objectName: "endClipItem"
            text: qsTr("End Clip Here")
            shortcut: "O"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.markOutPoint()
        }
        T.Action {
            objectName: "markClipItem"
            text: bar.can.markTitle
            shortcut: "Ctrl+Shift+M"
            enabled: bar.can.canMarkClip
            onTriggered: bar.session.markCurrentClip()
        }
        AppMenuSeparator {}
        T.Action {
            id: previousClip

            objectName: "previousClipItem"
            text: qsTr("Previous Clip")
            shortcut: "Ctrl+["
            enabled: bar.can.canGoToPreviousClip
            onTriggered: bar.session.previousClip()
        }
        T.Action {
            id: nextClip

            objectName: "nextClipItem"
            text: qsTr("Next Clip")
            shortcut: "Ctrl+]"
            enabled: bar.can.canGoToNextClip
            onTriggered: bar.session.nextClip()
        }
    }
    AppMenu {
        title: qsTr("&Help")

        T.Action {
            id: help

            objectName: "helpItem"
            text: qsTr("Zelvra Help")
            shortcut: "Ctrl+?"
            enabled: bar.can.canAct
            onTriggered: bar.helpAsked()
        }
        T.Action {
            objectName: "aboutItem"
            text: qsTr("About Zelvra")
            enabled: bar.can.canAct
            onTriggered: bar.aboutAsked()
        }
    }

    // Brackets and the question mark cannot be typed with Ctrl on every keyboard.
    Shortcut {
        sequence: "F1"
        enabled: help.enabled
        onActivated: help.trigger()
    }
    Shortcut {
        sequence: "Ctrl+PgUp"
        enabled: previousClip.enabled
        onActivated: previousClip.trigger()
    }
    Shortcut {
        sequence: "Ctrl+PgDown"
        enabled: nextClip.enabled
        onActivated: nextClip.trigger()
    }
}
