// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The clips that were marked in the recording, in the order of their export.
ColumnLayout {
    id: section

    required property Session session

    objectName: "markedClips"
    spacing: 0

    Separator {
        Layout.fillWidth: true
    }
    RowLayout {
        Layout.fillWidth: true
        Layout.margins: 12
        spacing: 8

        Headline {
            text: qsTr("Marked Clips")
        }
        HeadlineDigits {
            objectName: "markedClipCount"
            text: section.session.markedClipCount
        }
        Item {
            Layout.fillWidth: true
        }
    }
    Separator {
        Layout.fillWidth: true
    }
    RowList {
        objectName: "markedClipList"
        Layout.fillWidth: true
        Layout.preferredHeight: Math.min(220, contentHeight + topMargin + bottomMargin)
        model: section.session.markedClipRows
        Accessible.name: qsTr("Marked clips")
        onOpened: id => section.session.editMarkedClip(id)
        onRemoved: id => section.session.unmark(id)
        delegate: MarkedClipRow {
            session: section.session
        }
    }
    Separator {
        Layout.fillWidth: true
    }
}
