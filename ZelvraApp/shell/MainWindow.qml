import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Dialogs
import Zelvra.Session
import Zelvra.Theme
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

    // For what the toolkit draws itself: its dialogs, where the desktop has none.
    palette {
        window: Theme.window
        windowText: Theme.primary
        base: Theme.field
        alternateBase: Theme.bar
        text: Theme.primary
        placeholderText: Theme.tertiary
        button: Theme.control
        buttonText: Theme.primary
        brightText: Theme.primary
        highlight: Theme.accentFill
        highlightedText: "#ffffff"
        light: Theme.hover
        midlight: Theme.controlHover
        mid: Theme.controlPressed
        dark: Theme.controlBorder
        link: Theme.accent
        toolTipBase: Theme.card
        toolTipText: Theme.primary
    }

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

        session: window.session
        shell: window.shell
        onSettingsAsked: settings.present()
        onHelpAsked: help.present()
        onAboutAsked: about.present()
    }

    ContentView {
        anchors.fill: parent
        session: window.session
    }

    Question {
        objectName: "leavingQuestion"
        title: "Stop the export and quit?"
        message: "The export is still running. Quitting stops it, and the unfinished movie is removed. Highlights and marked clips that haven't been exported yet are discarded."
        answers: [
            {
                text: "Stop and Quit",
                role: "destructive",
                action: () => window.shell.leaving.stopExportAndLeave()
            },
            {
                text: "Keep Exporting",
                role: "cancel"
            }
        ]
        visible: window.shell.leaving.asksAboutExport
        onDismissed: window.shell.leaving.stay()
    }

    FileDialog {
        id: moviePanel

        title: window.shell.panels.message
        acceptLabel: window.shell.panels.prompt
        nameFilters: window.shell.panels.movieFilters
        currentFolder: window.shell.panels.firstFolder
        onAccepted: window.shell.panels.choose(selectedFile)
    }
    FolderDialog {
        id: folderPanel

        title: window.shell.panels.message
        acceptLabel: window.shell.panels.prompt
        currentFolder: window.shell.panels.firstFolder
        onAccepted: window.shell.panels.choose(selectedFolder)
    }
    Connections {
        target: window.shell.panels

        function onMovieAsked() {
            moviePanel.open();
        }
        function onFolderAsked() {
            folderPanel.open();
        }
    }

    OnDemand {
        id: settings

        SettingsWindow {
            main: window
            settings: window.shell.settings
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
