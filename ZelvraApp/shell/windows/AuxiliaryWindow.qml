// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Shell

// A window beside the main one. Ctrl+W and Esc close it. Opened again, it is as it was.
Window {
    id: window

    property Window main
    default property alias content: holder.data

    transientParent: null
    color: Theme.window

    function present() {
        if (!visible) {
            x = main.x + (main.width - width) / 2;
            y = main.y + (main.height - height) / 2;
            show();
        }
        raise();
        requestActivate();
    }

    Item {
        id: holder

        anchors.fill: parent
    }
    Shortcut {
        sequences: ["Ctrl+W", "Esc"]
        onActivated: window.close()
    }
}
