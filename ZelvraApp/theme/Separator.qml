import QtQuick
import Zelvra.Theme

// A hairline; vertical where it is given a height.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.separator
}
