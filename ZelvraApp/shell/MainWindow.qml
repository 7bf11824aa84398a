import QtQuick
import QtQuick.Controls.Basic
import Zelvra.Session
import Zelvra.Theme
import Zelvra.Views
import Zelvra.Shell

// The one main window.
ApplicationWindow {
    id: window

    required property Session session

    objectName: "main"
    title: "Zelvra"
    width: 1280
    height: 800
    minimumWidth: 960
    minimumHeight: 620
    visible: true
    color: Theme.window

    ContentView {
        anchors.fill: parent
        session: window.session
    }
}
