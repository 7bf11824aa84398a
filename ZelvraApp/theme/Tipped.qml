import QtQuick
import QtQuick.Controls.Basic
import Zelvra.Theme

// Gives what it holds a tooltip, also while that is disabled.
Item {
    id: root

    property string tip
    readonly property alias hovered: hover.hovered
    default property alias content: holder.data

    implicitWidth: holder.childrenRect.width
    implicitHeight: holder.childrenRect.height

    Item {
        id: holder
        anchors.fill: parent
    }
    HoverHandler {
        id: hover
    }
    ToolTip {
        id: label

        visible: hover.hovered && root.tip !== ""
        delay: Theme.tipDelay
        text: root.tip
        padding: 6
        contentItem: Text {
            text: label.text
            color: Theme.primary
            font.family: Theme.family
            font.pixelSize: Theme.caption
        }
        background: Rectangle {
            color: Theme.card
            border.color: Theme.separator
            radius: 4
        }
    }
}
