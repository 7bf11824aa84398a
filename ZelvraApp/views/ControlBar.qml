// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The row of controls under the picture. Where it has little room, texts give way one by one.
Rectangle {
    id: bar

    required property Session session

    // How many of the savings below are made.
    readonly property int savings: rules.savingsNeeded(width, fullWidth, [timeText.advanceWidth, exportButton.widthAround(exportText.advanceWidth) - exportButton.signWidth, markButton.widthAround(markText.advanceWidth) - markButton.signWidth, nameWidth - titleRowWidth, addButton.widthAround(addText.advanceWidth) - addButton.signWidth, badge.visible ? badge.rangeWidth : 0])
    readonly property bool saysTime: savings < 1
    readonly property bool saysExport: savings < 2
    readonly property bool saysMark: savings < 3
    readonly property bool saysAdd: savings < 5
    readonly property bool saysRange: savings < 6
    readonly property bool isTight: fullWidth - width > 0 && !saysRange

    readonly property real titleRowWidth: time.implicitWidth + (session.hasTrim ? 6 + badge.fullWidth : 0)
    readonly property real nameWidth: Math.max(titleRowWidth, Math.min(fileName.implicitWidth, 140))
    readonly property real queueWidth: 2 * (previous.implicitWidth + divider.width) + Math.max(58, queueText.implicitWidth) + 4 * 6
    readonly property real fullWidth: 2 * 16 + opening.implicitWidth + (rules.hasQueue ? queueWidth + 12 : 0) + nameWidth + 2 * inKey.implicitWidth + addButton.widthAround(addText.advanceWidth + timeText.advanceWidth) + markButton.widthAround(markText.advanceWidth) + exportButton.widthAround(exportText.advanceWidth) + 6 * 12

    objectName: "controlBar"
    implicitHeight: row.implicitHeight + 24
    color: Theme.bar

    ControlBarModel {
        id: rules
        session: bar.session
    }
    LabelMetrics {
        id: addText
        text: "Add Highlight"
    }
    LabelMetrics {
        id: timeText
        text: " at " + bar.session.timecode.replace(/\d/g, "0")
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
        anchors.leftMargin: bar.isTight ? 12 : 16
        anchors.rightMargin: bar.isTight ? 12 : 16
        spacing: bar.isTight ? 6 : 12

        Row {
            id: opening

            spacing: 6

            Tipped {
                tip: openMenu.visible ? "" : "Open a video or a folder of clips"

                PushButton {
                    id: openButton

                    objectName: "openMenuButton"
                    look: PushButton.Borderless
                    iconName: "create_new_folder"
                    iconSize: 20
                    controlHeight: 30
                    Accessible.name: "Open"
                    onClicked: openMenu.open()

                    AppMenu {
                        id: openMenu

                        y: -height - 4

                        AppMenuItem {
                            objectName: "openMenuVideo"
                            text: "Open Video…"
                            onTriggered: bar.session.requestOpenVideo()
                        }
                        AppMenuItem {
                            objectName: "openMenuFolder"
                            text: "Open Folder of Clips…"
                            onTriggered: bar.session.requestOpenFolder()
                        }
                    }
                }
            }
            Tipped {
                tip: "Close current clip"

                PushButton {
                    objectName: "closeClip"
                    look: PushButton.Borderless
                    iconName: "highlight_off"
                    iconSize: 20
                    controlHeight: 30
                    enabled: bar.session.hasVideo
                    Accessible.name: "Close"
                    onClicked: bar.session.requestCloseVideo()
                }
            }
        }
        Row {
            id: queue

            objectName: "queueNavigator"
            visible: rules.hasQueue
            spacing: bar.isTight ? 0 : 6

            Separator {
                id: divider

                anchors.verticalCenter: parent.verticalCenter
                width: 1
                height: 22
            }
            Tipped {
                anchors.verticalCenter: parent.verticalCenter
                tip: "Previous clip (⌘[)"

                PushButton {
                    id: previous

                    objectName: "previousClip"
                    look: PushButton.Borderless
                    iconName: "chevron_left"
                    iconSize: 20
                    enabled: rules.canGoBack
                    Accessible.name: "Previous clip"
                    onClicked: bar.session.previousClip()
                }
            }
            Item {
                anchors.verticalCenter: parent.verticalCenter
                implicitWidth: Math.max(bar.isTight ? 0 : 58, queueText.implicitWidth)
                implicitHeight: queueText.implicitHeight

                CaptionDigits {
                    id: queueText

                    objectName: "queueLabel"
                    anchors.centerIn: parent
                    text: bar.session.state.queueLabel
                }
            }
            Tipped {
                anchors.verticalCenter: parent.verticalCenter
                tip: "Next clip (⌘])"

                PushButton {
                    objectName: "nextClip"
                    look: PushButton.Borderless
                    iconName: "chevron_right"
                    iconSize: 20
                    enabled: bar.session.state.canGoNext
                    Accessible.name: "Next clip"
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
                    compact: !bar.saysRange
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
            tip: "Add highlight at current time (N)"

            PushButton {
                id: addButton

                objectName: "addHighlight"
                look: PushButton.Prominent
                controlHeight: Theme.largeControlHeight
                iconName: "add_circle"
                iconSize: 18
                tabularDigits: true
                text: bar.saysTime ? "Add Highlight at " + bar.session.timecode : bar.saysAdd ? "Add Highlight" : ""
                enabled: bar.session.hasVideo
                Accessible.name: "Add Highlight at " + bar.session.timecode
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
                text: bar.saysMark ? markText.text : ""
                enabled: bar.session.hasTrim
                Accessible.name: markText.text
                onClicked: bar.session.markCurrentClip()
            }
        }
        Tipped {
            tip: "Export (⌘E)"

            PushButton {
                id: exportButton

                objectName: "exportMovies"
                controlHeight: Theme.largeControlHeight
                iconName: "ios_share"
                iconSize: 18
                text: bar.saysExport ? rules.exportLabel : ""
                enabled: bar.session.state.canExport
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
