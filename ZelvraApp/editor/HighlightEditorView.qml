// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Editor

// The editor of a highlight: a window of its own over the one that this stands in, there exactly while the session
// has a draft. `over` is made in that window, for what has to come over the editor.
Item {
    id: view

    required property Session session
    property Component over: null

    Loader {
        active: view.session.hasDraft
        sourceComponent: EditorWindow {
            session: view.session
            owner: view.Window.window
            over: view.over
        }
    }
}
