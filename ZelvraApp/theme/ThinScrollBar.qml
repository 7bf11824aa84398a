import QtQuick
import QtQuick.Templates as T
import Zelvra.Theme

// A scroll bar that shows only while there is something to scroll to.
T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    visible: bar.size < 1
    minimumSize: 0.1
    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: Theme.tertiary
        opacity: bar.pressed ? 0.9 : bar.hovered ? 0.7 : 0.4
    }
}
