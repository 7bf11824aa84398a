import QtQuick
import Zelvra.Editor
import Zelvra.Session
import Zelvra.Theme
import Zelvra.Views

// The editor, in a window over the main one, while there is a draft. Closing it gives the draft up.
Window {
    id: sheet

    required property Session session
    required property Dialogs dialogs

    objectName: "editorSheet"
    visible: sheet.session.hasDraft
    modality: Qt.WindowModal
    flags: Qt.Dialog
    width: 1000
    height: 740
    minimumWidth: 880
    minimumHeight: 640
    color: Theme.window
    onVisibleChanged: {
        if (!visible)
            sheet.transientParent?.requestActivate();
    }
    onClosing: sheet.session.cancelDraft()

    Loader {
        anchors.fill: parent
        active: sheet.session.hasDraft
        focus: true
        sourceComponent: HighlightEditorView {
            session: sheet.session
        }
    }
    QuestionHost {
        session: sheet.session
        dialogs: sheet.dialogs
        enabled: sheet.session.hasDraft
    }
}
