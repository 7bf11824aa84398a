// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Shell

// A quick tour of the program.
AuxiliaryWindow {
    id: window

    objectName: "help"
    title: qsTr("Zelvra Help")
    width: 640
    height: 720
    minimumWidth: width
    maximumWidth: width
    minimumHeight: 360
    maximumHeight: tour.height

    component Note: SecondaryText {
        Layout.fillWidth: true
        wrapMode: Text.Wrap
    }

    Flickable {
        id: scroller

        objectName: "helpScroller"
        anchors.fill: parent
        contentHeight: tour.height
        boundsBehavior: Flickable.StopAtBounds
        focus: true
        Keys.onUpPressed: flick(0, 600)
        Keys.onDownPressed: flick(0, -600)
        Keys.onPressed: event => {
            const pages = {
                [Qt.Key_PageUp]: contentY - height * 0.9,
                [Qt.Key_PageDown]: contentY + height * 0.9,
                [Qt.Key_Space]: contentY + height * 0.9,
                [Qt.Key_Home]: 0,
                [Qt.Key_End]: contentHeight
            };
            event.accepted = event.key in pages;
            if (event.accepted)
                contentY = Math.max(0, Math.min(contentHeight - height, pages[event.key]));
        }
        T.ScrollBar.vertical: AppScrollBar {}

        ColumnLayout {
            id: tour

            x: 36
            width: Math.min(scroller.width, 640) - 72
            height: implicitHeight
            spacing: 28

            ColumnLayout {
                Layout.topMargin: 32
                spacing: 4

                Title {
                    text: "Zelvra"
                    font.pixelSize: Theme.largeTitle
                    Accessible.role: Accessible.Heading
                }
                SecondaryText {
                    text: qsTr("A quick tour of the app.")
                    font.pixelSize: Theme.title
                }
            }
            Repeater {
                model: HelpContent.sections
                HelpSection {}
            }
            ColumnLayout {
                Layout.bottomMargin: 32
                spacing: 8

                Note {
                    text: HelpContent.workNote
                }
                Note {
                    objectName: "helpKeys"
                    text: HelpContent.keysNote
                }
            }
        }
    }
}
