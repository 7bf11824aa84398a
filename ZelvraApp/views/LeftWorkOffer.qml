// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// Offers to restore what the user has left on this clip at an earlier time.
RowLayout {
    id: offer

    required property Session session
    property real widest: Infinity
    // Keeps the text while the card slides out.
    property string text

    function follow() {
        if (offer.session.hasLeftWork)
            offer.text = Texts.leftWork(offer.session.leftHighlightCount, offer.session.leftMarkedClipCount);
    }

    objectName: "leftWork"
    width: Math.min(implicitWidth, widest)
    spacing: 12
    Component.onCompleted: follow()

    Connections {
        target: offer.session
        function onLeftWorkChanged() {
            offer.follow();
        }
    }
    Icon {
        name: "history"
        size: 24
        color: Theme.accent
    }
    Body {
        objectName: "leftWorkText"
        Layout.fillWidth: true
        text: offer.text
        font.weight: Font.Medium
        wrapMode: Text.Wrap
    }
    Tipped {
        tip: qsTr("Restore what you left on this clip (R)")

        PushButton {
            objectName: "restoreLeftWork"
            text: qsTr("Restore")
            look: PushButton.Prominent
            onClicked: offer.session.restoreLeftWork()
        }
    }
    PushButton {
        objectName: "dismissLeftWork"
        look: PushButton.Borderless
        iconName: "close"
        Accessible.name: qsTr("Dismiss")
        onClicked: offer.session.dismissLeftWork()
    }
}
