// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Shell

// The user's preferences. Each control writes at once.
AuxiliaryWindow {
    id: window

    required property Settings settings
    required property Session session

    objectName: "settings"
    title: qsTr("Settings")
    width: 480
    height: 640
    minimumWidth: width
    maximumWidth: width
    minimumHeight: 360
    maximumHeight: Math.max(640, form.implicitHeight + 28)
    onActiveFocusItemChanged: scroller.reveal(activeFocusItem)

    component Spring: Item {
        Layout.fillWidth: true
    }
    component ValueText: DigitText {
        Layout.preferredWidth: 50
        alignment: Qt.AlignRight
        color: Theme.secondary
    }

    Question {
        id: forgetting

        title: qsTr("Forget all unfinished work?")
        message: qsTr("What is remembered of all clips is deleted. The clip that is open keeps its highlights and marked clips, and exported movies stay.")
        answers: [
            {
                text: qsTr("Forget All"),
                role: "destructive",
                action: () => window.session.forgetRememberedWork()
            },
            {
                text: qsTr("Cancel"),
                role: "cancel"
            }
        ]
    }
    Flickable {
        id: scroller

        // Scrolls as far as needed to show the whole control.
        function reveal(control: Item) {
            if (!control || control.height >= height)
                return;
            const top = control.mapToItem(contentItem, 0, 0).y;
            contentY = Math.max(Math.min(contentY, top - 14), top + control.height + 14 - height);
        }

        objectName: "settingsScroller"
        anchors.fill: parent
        contentHeight: form.implicitHeight + 28
        boundsBehavior: Flickable.StopAtBounds
        clip: contentHeight > height
        T.ScrollBar.vertical: AppScrollBar {}

        ColumnLayout {
            id: form

            x: 20
            y: 14
            width: parent.width - 40
            spacing: 12

            FormSection {
                title: qsTr("Highlight Defaults")
                footer: qsTr("Starting values for every new highlight. Changes here apply immediately. When you restyle a highlight in the editor, the app asks whether to keep that look for the clip, the session, or always.")

                FormRow {
                    first: true
                    label: qsTr("Highlight Color")

                    Spring {}
                    ColorWell {
                        objectName: "defaultColor"
                        Accessible.name: qsTr("Highlight Color")
                        color: window.settings.color
                        onPicked: color => window.settings.color = color
                    }
                }
                FormRow {
                    label: qsTr("Size")

                    Spring {}
                    ValueSlider {
                        objectName: "defaultSize"
                        Accessible.name: qsTr("Size")
                        Layout.preferredWidth: 200
                        from: 0.01
                        to: 0.45
                        value: window.settings.radiusRatio
                        onMoved: window.settings.radiusRatio = value
                    }
                    ValueText {
                        objectName: "defaultSizeText"
                        text: window.settings.radiusText
                    }
                }
                FormRow {
                    label: qsTr("Stroke")

                    Spring {}
                    ValueSlider {
                        objectName: "defaultStroke"
                        Accessible.name: qsTr("Stroke")
                        Layout.preferredWidth: 200
                        from: 0.001
                        to: 0.02
                        value: window.settings.strokeRatio
                        onMoved: window.settings.strokeRatio = value
                    }
                    ValueText {
                        objectName: "defaultStrokeText"
                        text: window.settings.strokeText
                    }
                }
                FormRow {
                    label: qsTr("Freeze Duration")

                    Spring {}
                    Stepper {
                        objectName: "defaultDuration"
                        name: qsTr("Freeze Duration")
                        from: 0.5
                        to: 10
                        stepSize: 0.5
                        value: window.settings.durationSec
                        text: window.settings.durationText
                        onModified: value => window.settings.durationSec = value
                    }
                }
            }
            FormSection {
                title: qsTr("Marking Clips")
                footer: qsTr("Press I while watching to drop a clip of this length into Marked Clips — playback keeps going. Press O to set the exact end, or click the clip later to fine-tune on the zoomed strip.")

                FormRow {
                    first: true
                    label: qsTr("New clip length")

                    Spring {}
                    Stepper {
                        objectName: "clipLength"
                        name: qsTr("New clip length")
                        from: 5
                        to: 120
                        stepSize: 5
                        value: window.settings.clipLengthSec
                        text: window.settings.clipLengthText
                        onModified: value => window.settings.clipLengthSec = value
                    }
                }
            }
            FormSection {
                title: qsTr("Output Location")
                footer: window.settings.outputFooterText
                footerName: "outputFooter"

                FormRow {
                    id: exportTo

                    first: true
                    label: qsTr("Export to")
                    labelAlignment: Qt.AlignTop

                    component Choice: RadioRow {
                        required property int mode

                        checked: window.settings.outputMode === mode
                        onToggled: window.settings.outputMode = mode
                    }

                    Spring {}
                    ColumnLayout {
                        Layout.preferredWidth: 200
                        spacing: 0

                        Choice {
                            objectName: "outputSameAsSource"
                            mode: Settings.SameAsSource
                            text: qsTr("Same folder as source")
                        }
                        Choice {
                            objectName: "outputSubfolder"
                            mode: Settings.Subfolder
                            text: qsTr("Subfolder of source")
                        }
                        Choice {
                            objectName: "outputCustom"
                            mode: Settings.Custom
                            text: qsTr("Custom folder")
                        }
                    }
                }
                FormRow {
                    visible: window.settings.outputMode === Settings.Subfolder
                    label: qsTr("Subfolder name")

                    Spring {}
                    TextInputBox {
                        id: subfolderName

                        objectName: "subfolderName"
                        Accessible.name: qsTr("Subfolder name")
                        Layout.preferredWidth: 200
                        placeholderText: "highlighted"
                        onTextEdited: window.settings.subfolderName = text
                        onAccepted: focus = false

                        Binding on text {
                            when: subfolderName.text !== window.settings.subfolderName
                            value: window.settings.subfolderName
                            restoreMode: Binding.RestoreNone
                        }
                    }
                }
                FormRow {
                    visible: window.settings.outputMode === Settings.Custom
                    label: qsTr("Folder")

                    Body {
                        objectName: "customFolder"
                        Layout.fillWidth: true
                        text: window.settings.customFolder || qsTr("— not chosen —")
                        color: window.settings.customFolder ? Theme.primary : Theme.secondary
                        elide: Text.ElideMiddle
                    }
                    PushButton {
                        objectName: "chooseFolder"
                        text: qsTr("Choose…")
                        onClicked: window.settings.chooseCustomFolder()
                    }
                }
                FormRow {
                    label: qsTr("Include audio in exported clips")

                    Spring {}
                    ToggleSwitch {
                        objectName: "includeAudio"
                        Accessible.name: qsTr("Include audio in exported clips")
                        checked: window.settings.includeAudio
                        onToggled: window.settings.includeAudio = checked
                    }
                }
            }
            FormSection {
                title: qsTr("Unfinished Work")
                footer: qsTr("Highlights, trims and marked clips are kept for every clip until you discard them, and offered again when you open it. If this is off, the app asks before another clip takes the place of unexported work.")

                FormRow {
                    first: true
                    label: qsTr("Remember unfinished work")

                    Spring {}
                    PushButton {
                        objectName: "forgetWork"
                        text: qsTr("Forget All…")
                        onClicked: forgetting.open()
                    }
                    ToggleSwitch {
                        objectName: "rememberWork"
                        Accessible.name: qsTr("Remember unfinished work")
                        checked: window.settings.rememberWork
                        onToggled: window.settings.rememberWork = checked
                    }
                }
            }
            RowLayout {
                Spring {}
                PushButton {
                    objectName: "resetSettings"
                    text: qsTr("Reset to Factory Defaults")
                    onClicked: window.settings.resetToFactoryDefaults()
                }
            }
        }
    }
}
