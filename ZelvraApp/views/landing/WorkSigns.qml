// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// What is remembered of a clip: how much, and whether it is exported or was open when the program was killed.
Row {
    id: signs

    required property int highlightCount
    required property int markedClipCount
    required property bool isExported
    required property bool wasInterrupted

    spacing: 5

    component Sign: Icon {
        anchors.verticalCenter: parent.verticalCenter
        size: 14
        color: Theme.tertiary
    }

    Sign {
        objectName: "interruptedSign"
        visible: signs.wasInterrupted
        name: "history"
        color: Theme.accent
    }
    SmallCaption {
        objectName: "workCount"
        anchors.verticalCenter: parent.verticalCenter
        text: Texts.workCount(signs.highlightCount, signs.markedClipCount)
        Accessible.ignored: true
    }
    Sign {
        objectName: "exportedSign"
        visible: signs.isExported
        name: "check_circle"
    }
}
