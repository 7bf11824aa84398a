// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// Shown while no clip is open. A clip is opened by a button, by a drop or from the recent ones.
Item {
    id: landing

    required property Session session
    property bool takesDrops: true

    Rectangle {
        anchors.fill: parent
        radius: Theme.landingRadius
        color: Theme.window
    }
    DropOutline {
        objectName: "dropOutline"
        anchors.fill: parent
        anchors.margins: 24
        color: Theme.over(Theme.accent, 0.9)
        shown: drop.isTargeted
    }
    FileDrop {
        id: drop

        objectName: "landing"
        anchors.fill: parent
        enabled: landing.takesDrops
        onOffered: url => landing.session.open(url)
    }
    ColumnLayout {
        anchors.centerIn: parent
        spacing: 18

        Item {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: 72
            implicitHeight: 72

            Icon {
                name: "video_call"
                size: 72
                color: Theme.secondary
                opacity: 1 - spinner.opacity
            }
            Spinner {
                id: spinner

                anchors.centerIn: parent
                width: 44
                height: 44
                running: landing.session.isOpening
            }
        }
        Title {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("Drop a video or folder here")
            font.pixelSize: Theme.middleTitle
            font.weight: Font.Medium
        }
        TertiaryText {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("or")
        }
        Row {
            Layout.alignment: Qt.AlignHCenter
            spacing: 12

            PushButton {
                objectName: "landingOpenVideo"
                text: qsTr("Open Video…")
                look: PushButton.Prominent
                controlHeight: Theme.largeControlHeight
                onClicked: landing.session.requestOpenVideo()
            }
            PushButton {
                objectName: "landingOpenFolder"
                text: qsTr("Open Folder…")
                controlHeight: Theme.largeControlHeight
                onClicked: landing.session.requestOpenFolder()
            }
        }
        QuickStartSteps {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 10
        }
        Row {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 6
            visible: landing.session.interruptedClip !== ""
            spacing: 6

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                name: "history"
                size: 15
                color: Theme.accent
            }
            Caption {
                objectName: "interrupted"
                width: Math.min(implicitWidth, landing.width - 120)
                text: qsTr("Zelvra did not end properly. Your work was kept: open “%1” to go on.").arg(landing.session.interruptedClip)
                elide: Text.ElideMiddle
            }
        }
        RecentsList {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 6
            session: landing.session
            visible: count > 0
        }
    }
}
