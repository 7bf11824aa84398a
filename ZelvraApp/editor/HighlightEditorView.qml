// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Editor

// Opens the editor's window over this item's window while the session has a draft. `over` is created in the editor's
// window, for what must lie over the editor.
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
