// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// A clip or folder in a menu, with what is remembered of the clip.
AppMenuItem {
    id: item

    required property string name
    required property bool hasWork
    required property int highlightCount
    required property int markedClipCount
    required property bool isExported
    required property bool wasInterrupted

    text: item.name
    detail: item.hasWork ? Texts.workCount(item.highlightCount, item.markedClipCount) : ""
    sign: item.isExported ? "check_circle" : item.wasInterrupted ? "history" : ""
    Accessible.description: item.hasWork ? Texts.workDetails(item.highlightCount, item.markedClipCount, item.isExported, item.wasInterrupted) : ""
}
