// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Shell

// Asks for a movie or a folder if the desktop offers no file chooser. Return opens, Backspace goes to the parent folder.
T.Popup {
    id: panel

    required property OpenPanels panels
    readonly property var chosen: files.entries[list.currentIndex]

    function present(over: Item) {
        parent = over;
        open();
        goTo(panels.firstFolder);
    }
    function goTo(folder: url) {
        files.folder = folder;
        list.forceActiveFocus();
    }
    function choose(url: url) {
        close();
        panels.choose(url);
    }
    function openRow() {
        if (chosen?.isFolder)
            goTo(chosen.url);
        else if (chosen)
            choose(chosen.url);
    }

    anchors.centerIn: parent
    width: Math.min(680, (parent?.width ?? 0) - 32)
    height: Math.min(500, (parent?.height ?? 0) - 32)
    padding: 16
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape

    FolderListing {
        id: files

        globs: panel.panels.globs
    }

    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
    background: Card {
        color: Theme.card
    }
    contentItem: ColumnLayout {
        spacing: 12
        Accessible.role: Accessible.Dialog
        Accessible.name: panel.panels.message

        Headline {
            objectName: "panelMessage"
            Layout.fillWidth: true
            text: panel.panels.message
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        ListView {
            id: ways

            Layout.fillWidth: true
            implicitHeight: Theme.controlHeight
            orientation: ListView.Horizontal
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            model: panel.panels.waysUp(files.folder)
            onCountChanged: positionViewAtEnd()
            delegate: RowLayout {
                id: way

                required property var modelData
                required property int index

                height: ListView.view.height
                spacing: 0

                Icon {
                    visible: way.index > 1
                    name: "chevron_right"
                    size: 14
                    color: Theme.tertiary
                }
                PushButton {
                    objectName: "way:" + way.modelData.name
                    text: way.modelData.name
                    look: PushButton.Borderless
                    tint: way.index === ways.count - 1 ? Theme.primary : Theme.secondary
                    onClicked: panel.goTo(way.modelData.url)
                }
            }
        }
        Rectangle {
            Layout.fillWidth: true
            Layout.fillHeight: true
            radius: Theme.radius
            color: Theme.field
            border.color: Theme.separator

            ListView {
                id: list

                objectName: "panelList"
                anchors.fill: parent
                anchors.margins: 4
                clip: true
                focus: true
                currentIndex: -1
                boundsBehavior: Flickable.StopAtBounds
                activeFocusOnTab: true
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Files")
                Keys.onReturnPressed: panel.openRow()
                Keys.onEnterPressed: panel.openRow()
                Keys.onPressed: event => {
                    event.accepted = event.key === Qt.Key_Backspace;
                    if (event.accepted)
                        panel.goTo(files.parentFolder);
                }
                T.ScrollBar.vertical: AppScrollBar {}
                model: files.entries
                onModelChanged: currentIndex = -1 // the view would choose the first by itself
                delegate: FilePanelRow {
                    width: ListView.view.width
                    onClicked: {
                        list.currentIndex = index;
                        list.forceActiveFocus();
                    }
                    onDoubleClicked: panel.openRow()
                }
            }
            TertiaryText {
                objectName: "panelEmpty"
                anchors.centerIn: parent
                visible: files.entries.length === 0 && !files.reading
                text: panel.panels.forFolder ? qsTr("No folders in here") : qsTr("No movies in here")
            }
        }
        RowLayout {
            spacing: 8

            Caption {
                Layout.fillWidth: true
                text: panel.panels.forFolder ? "" : qsTr("Movies: .mov, .mp4, .m4v")
                color: Theme.tertiary
            }
            PushButton {
                objectName: "panelCancel"
                text: qsTr("Cancel")
                controlHeight: Theme.largeControlHeight
                onClicked: panel.close()
            }
            PushButton {
                objectName: "panelChoose"
                text: panel.panels.prompt
                look: PushButton.Prominent
                controlHeight: Theme.largeControlHeight
                enabled: panel.panels.forFolder || panel.chosen !== undefined
                onClicked: {
                    if (!panel.panels.forFolder)
                        panel.openRow();
                    else
                        panel.choose(panel.chosen?.url ?? files.folder);
                }
            }
        }
    }
}
