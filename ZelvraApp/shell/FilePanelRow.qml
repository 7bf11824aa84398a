import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Theme
import Zelvra.Shell

// A file or folder in the panel.
T.AbstractButton {
    id: row

    required property int index
    required property string fileName
    required property bool fileIsDir
    required property var fileSize
    required property date fileModified
    readonly property bool chosen: ListView.isCurrentItem
    readonly property color ink: chosen ? "#ffffff" : Theme.primary
    readonly property color paleInk: chosen ? "#ffffff" : Theme.tertiary

    component Detail: Text {
        color: row.paleInk
        font.family: Theme.family
        font.pixelSize: Theme.caption
        horizontalAlignment: Text.AlignRight
    }

    objectName: "file:" + fileName
    implicitHeight: 28
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    leftPadding: 8
    rightPadding: 12
    Accessible.role: Accessible.ListItem
    Accessible.name: fileName

    contentItem: RowLayout {
        spacing: 8

        Icon {
            name: row.fileIsDir ? "folder" : "movie"
            color: row.chosen ? "#ffffff" : row.fileIsDir ? Theme.accent : Theme.secondary
        }
        Text {
            Layout.fillWidth: true
            text: row.fileName
            color: row.ink
            font.family: Theme.family
            font.pixelSize: Theme.body
            elide: Text.ElideMiddle
        }
        Detail {
            visible: !row.fileIsDir
            text: Qt.locale("C").formattedDataSize(row.fileSize, 1, Locale.DataSizeSIFormat)
        }
        Detail {
            Layout.preferredWidth: 120
            text: Qt.formatDateTime(row.fileModified, "yyyy-MM-dd HH:mm")
        }
    }
    background: Rectangle {
        radius: 5
        color: row.chosen ? Theme.accentFill : Theme.hover
        visible: row.chosen || row.hovered
    }
}
