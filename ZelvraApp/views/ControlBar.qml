// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The row of controls under the picture. When it has little room, it leaves out its texts one by one.
Rectangle {
    id: bar

    required property Session session
    readonly property string addAtTime: qsTr("Add Highlight at %1").arg(session.timecode)

    objectName: "controlBar"
    implicitHeight: row.implicitHeight + 24
    color: Theme.bar

    ControlBarModel {
        id: rules
        session: bar.session
        widths.available: bar.width
        widths.opening: opening.implicitWidth
        widths.queueButton: rules.hasQueue ? previous.implicitWidth : 0
        widths.queueText: queueLabel.textWidth
        widths.fileName: fileName.implicitWidth
        widths.time: time.implicitWidth
        widths.trimBadge: bar.session.hasTrim ? badge.fullWidth : 0
        widths.trimRange: badge.rangeWidth
        widths.markingKey: inKey.implicitWidth
        widths.addButton: addButton.widthAround(addText.advanceWidth)
        widths.addTime: addAtTimeText.advanceWidth - addText.advanceWidth
        widths.markButton: markButton.widthAround(markText.advanceWidth)
        widths.exportButton: exportButton.widthAround(exportText.advanceWidth)
        widths.signButton: exportButton.signWidth
    }
    LabelMetrics {
        id: addText
        text: qsTr("Add Highlight")
    }
    LabelMetrics {
        id: addAtTimeText
        text: qsTr("Add Highlight at %1").arg(bar.session.timecode.replace(/\d/g, "0"))
    }
    LabelMetrics {
        id: markText
        text: Texts.markLabel(bar.session.isEditingClip)
    }
    LabelMetrics {
        id: exportText
        text: rules.exportLabel
    }
    RowLayout {
        id: row

        anchors.verticalCenter: parent.verticalCenter
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: rules.isTight ? 12 : 16
        anchors.rightMargin: rules.isTight ? 12 : 16
        spacing: rules.isTight ? 6 : 12

        Row {
            id: opening

            spacing: 6

            Tipped {
                tip: openMenu.visible ? "" : qsTr("Open a video or a folder of clips")

                PushButton {
                    id: openButton

                    objectName: "openMenuButton"
                    look: PushButton.Borderless
                    iconName: "create_new_folder"
                    iconSize: 20
                    controlHeight: 30
                    Accessible.name: qsTr("Open")
                    onClicked: openMenu.open()

                    AppMenu {
                        id: openMenu

                        y: -height - 4

                        AppMenuItem {
                            objectName: "openMenuVideo"
                            text: qsTr("Open Video…")
                            onTriggered: bar.session.requestOpenVideo()
                        }
                        AppMenuItem {
                            objectName: "openMenuFolder"
                            text: qsTr("Open Folder of Clips…")
                            onTriggered: bar.session.requestOpenFolder()
                        }
                    }
                }
            }
            Tipped {
                tip: qsTr("Close current clip")

                PushButton {
                    objectName: "closeClip"
                    look: PushButton.Borderless
                    iconName: "highlight_off"
                    iconSize: 20
                    controlHeight: 30
                    enabled: bar.session.hasVideo
                    Accessible.name: qsTr("Close")
                    onClicked: bar.session.requestCloseVideo()
                }
            }
        }
        Row {
            id: queue

            objectName: "queueNavigator"
            visible: rules.hasQueue
            spacing: rules.isTight ? 0 : 6

            Separator {
                id: divider

                anchors.verticalCenter: parent.verticalCenter
                width: 1
                height: 22
            }
            Tipped {
                anchors.verticalCenter: parent.verticalCenter
                tip: qsTr("Previous clip (⌘[)")

                PushButton {
                    id: previous

                    objectName: "previousClip"
                    look: PushButton.Borderless
                    iconName: "chevron_left"
                    iconSize: 20
                    enabled: rules.canGoBack
                    Accessible.name: qsTr("Previous clip")
                    onClicked: bar.session.previousClip()
                }
            }
            QueueLabel {
                id: queueLabel

                anchors.verticalCenter: parent.verticalCenter
                session: bar.session
                leastWidth: rules.isTight ? 0 : 58
            }
            Tipped {
                anchors.verticalCenter: parent.verticalCenter
                tip: qsTr("Next clip (⌘])")

                PushButton {
                    objectName: "nextClip"
                    look: PushButton.Borderless
                    iconName: "chevron_right"
                    iconSize: 20
                    enabled: bar.session.canGoNext
                    Accessible.name: qsTr("Next clip")
                    onClicked: bar.session.nextClip()
                }
            }
            Separator {
                anchors.verticalCenter: parent.verticalCenter
                width: 1
                height: 22
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Caption {
                id: fileName

                objectName: "fileName"
                Layout.fillWidth: true
                Layout.minimumWidth: 0
                visible: bar.session.hasVideo
                text: bar.session.fileName
                elide: Text.ElideMiddle
            }
            Row {
                spacing: 6

                DigitText {
                    id: time

                    objectName: "playheadTime"
                    anchors.verticalCenter: parent.verticalCenter
                    text: bar.session.timecode
                    font.pixelSize: Theme.title
                }
                TrimIndicator {
                    id: badge

                    anchors.verticalCenter: parent.verticalCenter
                    visible: bar.session.hasTrim
                    session: bar.session
                    compact: !rules.hasTrimRange
                    start: bar.session.trimStart
                    end: bar.session.trimEnd
                    isEditingQueuedClip: bar.session.isEditingClip
                    onCleared: bar.session.clearTrim()
                }
            }
        }
        MarkingKey {
            id: inKey

            objectName: "inPoint"
            letter: "I"
            tip: rules.inPointTip
            available: bar.session.hasVideo
            onClicked: bar.session.markInPoint()
        }
        MarkingKey {
            objectName: "outPoint"
            letter: "O"
            tip: rules.outPointTip
            available: bar.session.hasVideo
            onClicked: bar.session.markOutPoint()
        }
        Tipped {
            tip: qsTr("Add highlight at current time (N)")

            PushButton {
                id: addButton

                objectName: "addHighlight"
                look: PushButton.Prominent
                controlHeight: Theme.largeControlHeight
                iconName: "add_circle"
                iconSize: 18
                tabularDigits: true
                text: rules.hasAddTime ? bar.addAtTime : rules.hasAddText ? addText.text : ""
                enabled: bar.session.hasVideo
                Accessible.name: bar.addAtTime
                onClicked: bar.session.addHighlightAtCurrentTime()
            }
        }
        Tipped {
            tip: Texts.markTip(bar.session.isEditingClip)

            PushButton {
                id: markButton

                objectName: "markClip"
                controlHeight: Theme.largeControlHeight
                iconName: bar.session.isEditingClip ? "check_circle" : "bookmark"
                iconSize: 18
                text: rules.hasMarkText ? markText.text : ""
                enabled: bar.session.hasTrim
                Accessible.name: markText.text
                onClicked: bar.session.markCurrentClip()
            }
        }
        Tipped {
            tip: qsTr("Export (⌘E)")

            PushButton {
                id: exportButton

                objectName: "exportMovies"
                controlHeight: Theme.largeControlHeight
                iconName: "ios_share"
                iconSize: 18
                text: rules.hasExportText ? rules.exportLabel : ""
                enabled: bar.session.canExport
                Accessible.name: rules.exportLabel
                onClicked: bar.session.exportMovies()
            }
        }
    }
    Separator {
        anchors.top: parent.top
        width: parent.width
    }
}
