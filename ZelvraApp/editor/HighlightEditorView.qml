import QtQuick
import Zelvra.Session
import Zelvra.Editor

// The sheet in which a highlight is drawn.
Item {
    id: editor

    required property Session session
}
