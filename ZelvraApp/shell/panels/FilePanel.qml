// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls
import Zelvra.Views
import Zelvra.Shell

// Asks for a file or a folder, or for the name of a file to save, if the desktop offers no file chooser. Return opens,
// Backspace goes to the parent folder.
T.Popup {
    id: panel

    required property FilePanels panels
    readonly property var chosen: files.entries[list.currentIndex]
    readonly property url named: panels.fileNamed(name.text, files.folder)

    function present(over: Item) {
        parent = over;
        name.text = panels.suggestedName;
        open();
        goTo(panels.firstFolder);
        if (panels.forSaving) {
            name.forceActiveFocus();
            name.selectStem();
        }
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
        else if (chosen && panels.forSaving)
            save();
        else if (chosen)
            choose(chosen.url);
    }
    function save() {
        if (panels.exists(named))
            replacing.open();
        else if (named.toString() !== "")
            choose(named);
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

    Question {
        id: replacing

        title: qsTr("Replace “%1”?").arg(Texts.fileName(panel.named))
        message: qsTr("A file of this name exists in this folder. Its content will be lost.")
        answers: [
            {
                text: qsTr("Replace"),
                role: "destructive",
                action: () => panel.choose(panel.named)
            },
            {
                text: qsTr("Cancel"),
                role: "cancel"
            }
        ]
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
        RowLayout {
            visible: panel.panels.forSaving
            spacing: 8

            Body {
                text: qsTr("Name")
                Accessible.ignored: true
            }
            TextInputBox {
                id: name

                function selectStem() {
                    select(0, Math.max(0, text.lastIndexOf(".")));
                }

                objectName: "panelName"
                Layout.fillWidth: true
                Accessible.name: qsTr("Name")
                onAccepted: panel.save()
            }
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
                    fileIcon: panel.panels.fileIcon
                    onClicked: {
                        list.currentIndex = index;
                        list.forceActiveFocus();
                        if (panel.panels.forSaving && !modelData.isFolder)
                            name.text = modelData.name;
                    }
                    onDoubleClicked: panel.openRow()
                }
            }
            TertiaryText {
                objectName: "panelEmpty"
                anchors.centerIn: parent
                visible: files.entries.length === 0 && !files.reading
                text: panel.panels.emptyText
            }
        }
        RowLayout {
            spacing: 8

            Caption {
                Layout.fillWidth: true
                text: panel.panels.kindText
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
                enabled: panel.panels.forSaving ? panel.named.toString() !== "" : panel.panels.forFolder || panel.chosen !== undefined
                onClicked: {
                    if (panel.panels.forSaving)
                        panel.save();
                    else if (!panel.panels.forFolder)
                        panel.openRow();
                    else
                        panel.choose(panel.chosen?.url ?? files.folder);
                }
            }
        }
    }
}
