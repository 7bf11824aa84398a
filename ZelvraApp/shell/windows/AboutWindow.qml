// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Zelvra.Controls
import Zelvra.Shell

// Name, version and maker of the program.
AuxiliaryWindow {
    id: window

    objectName: "about"
    title: qsTr("About Zelvra")
    width: 380
    height: 520
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 56
        spacing: 20

        Image {
            objectName: "appIcon"
            Layout.alignment: Qt.AlignHCenter
            source: "../AppIcon.svg"
            sourceSize.width: 128
            sourceSize.height: 128
            Accessible.ignored: true
        }
        ColumnLayout {
            Layout.alignment: Qt.AlignHCenter
            spacing: 6

            Title {
                Layout.alignment: Qt.AlignHCenter
                text: "Zelvra"
                font.pixelSize: Theme.middleTitle
                Accessible.role: Accessible.Heading
            }
            SecondaryText {
                Layout.alignment: Qt.AlignHCenter
                objectName: "versionText"
                text: About.versionText
            }
            SecondaryText {
                Layout.alignment: Qt.AlignHCenter
                text: qsTr("An App for highlighting your best moves.")
            }
        }
        Separator {
            Layout.fillWidth: true
            Layout.leftMargin: 40
            Layout.rightMargin: 40
        }
        ColumnLayout {
            Layout.alignment: Qt.AlignHCenter
            spacing: 12

            Overline {
                Layout.alignment: Qt.AlignHCenter
                text: qsTr("Made by Corvath")
                font.letterSpacing: 1.5
            }
            Image {
                objectName: "makerLogo"
                Layout.alignment: Qt.AlignHCenter
                visible: status === Image.Ready
                source: "../CorvathGrid.svg"
                sourceSize.width: 60
                sourceSize.height: 60
                Accessible.role: Accessible.Graphic
                Accessible.name: "Corvath"
            }
        }
    }
}
