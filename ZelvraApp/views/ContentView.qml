import QtQuick
import Zelvra.Session
import Zelvra.Editor
import Zelvra.Views

// What the main window shows.
Item {
    id: content

    required property Session session

    PlayerView {
        anchors.fill: parent
        focus: true
        session: content.session
    }
    HighlightEditorView {
        session: content.session
    }
}
