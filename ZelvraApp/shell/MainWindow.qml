// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views
import Zelvra.Shell

// The one main window, with its menus, and the windows that it opens.
ApplicationWindow {
    id: window

    required property Session session
    required property Shell shell
    readonly property WindowState remembered: shell.windowState

    objectName: "main"
    title: "Zelvra"
    minimumWidth: 960
    minimumHeight: 620 + menus.height
    color: Theme.window

    Component.onCompleted: {
        width = remembered.width;
        height = remembered.height;
        if (remembered.maximized)
            showMaximized();
        else
            show();
    }
    onWidthChanged: rememberSize()
    onHeightChanged: rememberSize()
    onVisibilityChanged: visibility => {
        if (visibility === Window.Maximized || visibility === Window.Windowed)
            remembered.maximized = visibility === Window.Maximized;
    }
    onClosing: close => {
        close.accepted = false;
        shell.leaving.request();
    }

    function rememberSize() {
        if (visible && visibility === Window.Windowed) {
            remembered.width = width;
            remembered.height = height;
        }
    }

    menuBar: MainMenuBar {
        id: menus

        visible: window.visibility !== Window.FullScreen // the picture takes all of the screen
        session: window.session
        shell: window.shell
        onSettingsAsked: settings.present()
        onHelpAsked: help.present()
        onAboutAsked: about.present()
    }

    ContentView {
        anchors.fill: parent
        session: window.session
        dialogs: window.shell.dialogs
        sidebarWidth: window.remembered.sidebarWidth
        covered: window.shell.leaving.asksAboutExport || panel.visible
        onSidebarWidthChanged: window.remembered.sidebarWidth = sidebarWidth
    }

    Question {
        objectName: "leavingQuestion"
        title: qsTr("Stop the export and quit?")
        message: window.shell.settings.rememberWork ? qsTr("The export is still running. Quitting stops it, and the unfinished movie is removed.") : qsTr("The export is still running. Quitting stops it, and the unfinished movie is removed. Highlights and marked clips that haven't been exported yet are discarded.")
        answers: [
            {
                text: qsTr("Stop and Quit"),
                role: "destructive",
                action: () => window.shell.leaving.stopExportAndLeave()
            },
            {
                text: qsTr("Keep Exporting"),
                role: "cancel"
            }
        ]
        visible: window.shell.leaving.asksAboutExport
        onDismissed: window.shell.leaving.stay()
    }

    FilePanel {
        id: panel

        panels: window.shell.panels
    }
    Connections {
        target: window.shell.panels

        function onAsked() {
            panel.present(settings.item?.active ? settings.item.contentItem : window.contentItem);
        }
    }

    OnDemand {
        id: settings

        SettingsWindow {
            main: window
            settings: window.shell.settings
            session: window.session
        }
    }
    OnDemand {
        id: help

        HelpWindow {
            main: window
        }
    }
    OnDemand {
        id: about

        AboutWindow {
            main: window
        }
    }
}
