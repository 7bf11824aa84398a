import QtQuick
import Zelvra.Session
import Zelvra.Editor

// The editor of a highlight: a window of its own over the one that this stands in, there exactly while the session
// has a draft.
Item {
    id: view

    required property Session session

    Loader {
        active: view.session.hasDraft
        sourceComponent: EditorWindow {
            session: view.session
            owner: view.Window.window
        }
    }
}
