// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Controls
import Zelvra.Views

// A card that slides in from an edge of the view while it fades in, and back out the same way.
Card {
    id: card

    property bool shown: false
    property int edge: Qt.TopEdge
    default property alias content: holder.data

    implicitWidth: holder.childrenRect.width + 24
    implicitHeight: holder.childrenRect.height + 24
    opacity: 0
    visible: opacity > 0
    transform: Translate {
        id: slide
        y: (card.edge === Qt.TopEdge ? -1 : 1) * (card.height + 16)
    }
    states: State {
        name: "shown"
        when: card.shown
        PropertyChanges {
            card.opacity: 1
            slide.y: 0
        }
    }
    transitions: Transition {
        NumberAnimation {
            properties: "opacity, y"
            duration: Theme.motion
            easing.type: Easing.InOutQuad
        }
    }

    MouseArea {
        anchors.fill: parent // a click beside the buttons must not reach the picture
    }
    Item {
        id: holder

        x: 12
        y: 12
        width: childrenRect.width
        height: childrenRect.height
    }
}
