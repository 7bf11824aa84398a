// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Shell

// The menus of the main window. Each command is one action, for its item and its keys.
AppMenuBar {
    id: bar

    required property Session session
    required property Shell shell
    readonly property MenuState can: bar.shell.menu
    signal settingsAsked
    signal helpAsked
    signal aboutAsked

    AppMenu {
        title: "&File"

        T.Action {
            objectName: "openVideoItem"
            text: "Open Video…"
            shortcut: "Ctrl+O"
            enabled: bar.can.canAct
            onTriggered: bar.session.presentOpenVideoPanel()
        }
        T.Action {
            objectName: "openFolderItem"
            text: "Open Folder of Clips…"
            shortcut: "Ctrl+Shift+O"
            enabled: bar.can.canAct
            onTriggered: bar.session.presentOpenFolderPanel()
        }
        AppMenu {
            id: recents

            objectName: "openRecentMenu"
            title: "Open Recent"

            Instantiator {
                model: bar.session.recentRows
                delegate: AppMenuItem {
                    required property string path
                    required property string name
                    required property bool isFolder

                    objectName: "recentItem"
                    text: name
                    iconName: isFolder ? "folder" : "movie"
                    onTriggered: bar.session.openRecent(path)
                }
                onObjectAdded: (index, item) => recents.insertItem(index, item)
                onObjectRemoved: (index, item) => recents.removeItem(item)
            }
            AppMenuSeparator {}
            T.Action {
                objectName: "clearRecentsItem"
                text: "Clear Menu"
                enabled: bar.can.canClearRecents
                onTriggered: Qt.callLater(bar.session.clearRecents)
            }
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "closeClipItem"
            text: "Close Clip"
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
        AppMenuSeparator {}
        T.Action {
            objectName: "quitItem"
            text: "Quit"
            shortcut: "Ctrl+Q"
            enabled: bar.can.canAct
            onTriggered: bar.shell.leaving.request()
        }
    }
    AppMenu {
        title: "&Edit"

        T.Action {
            objectName: "undoItem"
            text: "Undo"
            shortcut: "Ctrl+Z"
            enabled: bar.can.canUndo
            onTriggered: bar.session.undo()
        }
        T.Action {
            objectName: "redoItem"
            text: "Redo"
            shortcut: "Ctrl+Shift+Z"
            enabled: bar.can.canRedo
            onTriggered: bar.session.redo()
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "settingsItem"
            text: "Settings…"
            shortcut: "Ctrl+,"
            enabled: bar.can.canAct
            onTriggered: bar.settingsAsked()
        }
    }
    AppMenu {
        title: "&View"

        T.Action {
            objectName: "previewItem"
            text: "Preview Highlights During Playback"
            checkable: true
            checked: bar.shell.settings.previewEnabled
            enabled: bar.can.canAct
            onToggled: bar.shell.settings.previewEnabled = checked
        }
    }
    AppMenu {
        title: "&Clip"

        T.Action {
            objectName: "addHighlightItem"
            text: "Add Highlight"
            shortcut: "N"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.addHighlightAtCurrentTime()
        }
        AppMenuSeparator {}
        T.Action {
            objectName: "trimItem"
            text: "Trim Clip…"
            shortcut: "Ctrl+Shift+T"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.beginTrim()
        }
        T.Action {
            objectName: "clearTrimItem"
            text: "Clear Trim"
            enabled: bar.can.canClearTrim
            onTriggered: bar.session.clearTrim()
        }
        T.Action {
            objectName: "startClipItem"
            text: "Start Clip Here"
            shortcut: "I"
            enabled: bar.can.canWorkOnClip
            onTriggered: bar.session.markInPoint()
        }
        T.Action {
            objectName: "endClipItem"
            text: "End Clip Here"
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
            text: "Previous Clip"
            shortcut: "Ctrl+["
            enabled: bar.can.canGoToPreviousClip
            onTriggered: bar.session.previousClip()
        }
        T.Action {
            id: nextClip

            objectName: "nextClipItem"
            text: "Next Clip"
            shortcut: "Ctrl+]"
            enabled: bar.can.canGoToNextClip
            onTriggered: bar.session.nextClip()
        }
    }
    AppMenu {
        title: "&Help"

        T.Action {
            id: help

            objectName: "helpItem"
            text: "Zelvra Help"
            shortcut: "Ctrl+?"
            enabled: bar.can.canAct
            onTriggered: bar.helpAsked()
        }
        T.Action {
            objectName: "aboutItem"
            text: "About Zelvra"
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
