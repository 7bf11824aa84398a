// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The clip's lists: its marked clips, if there are any, and its highlights.
Rectangle {
    id: sidebar

    required property Session session

    color: Theme.bar

    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: -1 // over the line of the toolbar
        spacing: 0

        MarkedClipsSection {
            Layout.fillWidth: true
            session: sidebar.session
            visible: sidebar.session.markedClipCount > 0
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 12
            spacing: 8

            Headline {
                Layout.fillWidth: true
                text: qsTr("Highlights")
            }
            Tipped {
                tip: qsTr("Undo last change (⌘Z)")

                PushButton {
                    objectName: "undo"
                    look: PushButton.Borderless
                    controlHeight: Theme.smallControlHeight
                    iconName: "undo"
                    Accessible.name: qsTr("Undo")
                    enabled: sidebar.session.canUndo
                    onClicked: sidebar.session.undo()
                }
            }
            HeadlineDigits {
                objectName: "highlightCount"
                text: sidebar.session.highlightCount
            }
        }
        Separator {
            Layout.fillWidth: true
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            Column {
                objectName: "noHighlights"
                anchors.centerIn: parent
                spacing: 6
                visible: sidebar.session.highlightCount === 0

                DashedOutline {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 30
                    height: 30
                    radius: width / 2
                    lineWidth: 2
                    dash: 4.2
                    gap: 3.1
                    color: Theme.tertiary
                }
                SecondaryText {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("No highlights yet")
                }
                Caption {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: qsTr("Scrub the video, then click\n“Add Highlight”.")
                    color: Theme.tertiary
                    horizontalAlignment: Text.AlignHCenter
                }
            }
            RowList {
                objectName: "highlightList"
                anchors.fill: parent
                model: sidebar.session.highlightRows
                Accessible.name: qsTr("Highlights")
                onOpened: id => sidebar.session.editHighlight(id)
                onRemoved: id => sidebar.session.deleteHighlight(id)
                delegate: HighlightRow {
                    session: sidebar.session
                }
            }
        }
    }
}
