// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The player's controls, on a card over the picture.
FocusScope {
    id: bar

    required property Session session
    required property PlayerControls controls
    property bool fullScreen: false
    // The pointer is over the card or drags something on it, or the menu of speeds is open.
    readonly property bool busy: hover.hovered || scrubber.pressed || speeds.visible
    signal fullScreenToggled

    implicitHeight: 72

    component SignButton: PushButton {
        look: PushButton.Borderless
        tint: Theme.pictureInk
        controlHeight: Theme.largeControlHeight
        iconSize: 22
    }

    PictureCard {
        anchors.fill: parent
    }
    // Takes clicks on the card, so that they do not reach the picture.
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
    }
    HoverHandler {
        id: hover
    }
    ColumnLayout {
        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        anchors.topMargin: 4
        anchors.bottomMargin: 4
        spacing: 0

        RowLayout {
            spacing: 2

            Tipped {
                tip: bar.controls.muted ? qsTr("Sound on") : qsTr("Sound off")

                SignButton {
                    objectName: "muteButton"
                    iconName: bar.controls.muted || bar.controls.volume === 0 ? "volume_off" : bar.controls.volume < 0.5 ? "volume_down" : "volume_up"
                    Accessible.name: qsTr("Mute")
                    onClicked: bar.controls.muted = !bar.controls.muted
                }
            }
            PictureSlider {
                objectName: "volumeSlider"
                Layout.preferredWidth: 72
                value: bar.controls.muted ? 0 : bar.controls.volume
                Accessible.name: qsTr("Volume")
                onMoved: bar.controls.volume = value
            }
            Item {
                Layout.fillWidth: true
            }
            Tipped {
                tip: qsTr("Back one frame (←)")

                SignButton {
                    objectName: "stepBackButton"
                    iconName: "skip_previous"
                    Accessible.name: qsTr("Back one frame")
                    onClicked: bar.controls.step(-1)
                }
            }
            Tipped {
                tip: bar.controls.isPlaying ? qsTr("Pause (Space)") : qsTr("Play (Space)")

                SignButton {
                    objectName: "playButton"
                    iconName: bar.controls.isPlaying ? "pause" : "play_arrow"
                    iconSize: 30
                    Accessible.name: bar.controls.isPlaying ? qsTr("Pause") : qsTr("Play")
                    onClicked: bar.controls.togglePlaying()
                }
            }
            Tipped {
                tip: qsTr("Forward one frame (→)")

                SignButton {
                    objectName: "stepForwardButton"
                    iconName: "skip_next"
                    Accessible.name: qsTr("Forward one frame")
                    onClicked: bar.controls.step(1)
                }
            }
            Item {
                Layout.fillWidth: true
            }
            Item {
                Layout.preferredWidth: 42
            }
            Tipped {
                tip: qsTr("Speed")

                SignButton {
                    id: speedButton

                    objectName: "speedButton"
                    text: bar.controls.rateText
                    Accessible.name: qsTr("Speed %1").arg(bar.controls.rateText)
                    onClicked: speeds.visible ? speeds.close() : speeds.open()
                }
            }
            Tipped {
                tip: bar.fullScreen ? qsTr("Leave full screen (Esc)") : qsTr("Full screen")

                SignButton {
                    objectName: "fullScreenButton"
                    iconName: bar.fullScreen ? "fullscreen_exit" : "fullscreen"
                    Accessible.name: qsTr("Full screen")
                    onClicked: bar.fullScreenToggled()
                }
            }
        }
        RowLayout {
            spacing: 10

            CaptionDigits {
                objectName: "elapsedText"
                text: bar.controls.elapsedText
                color: Theme.pictureInkDim
            }
            Scrubber {
                id: scrubber

                objectName: "scrubber"
                Layout.fillWidth: true
                session: bar.session
                controls: bar.controls
            }
            CaptionDigits {
                objectName: "remainingText"
                text: bar.controls.remainingText
                color: Theme.pictureInkDim
            }
        }
    }

    T.Popup {
        id: speeds

        parent: speedButton
        x: (speedButton.width - width) / 2
        y: -height - 6
        padding: 4
        width: 76
        implicitHeight: list.implicitHeight + 2 * padding
        background: PictureCard {
            radius: Theme.radius
        }
        contentItem: Column {
            id: list

            Repeater {
                model: bar.controls.rates
                SignButton {
                    required property double modelData

                    objectName: "speed:" + modelData
                    width: list.width
                    controlHeight: Theme.controlHeight
                    text: bar.controls.textOfRate(modelData)
                    tint: modelData === bar.controls.rate ? Theme.pictureAccent : Theme.pictureInk
                    onClicked: {
                        bar.controls.rate = modelData;
                        speeds.close();
                    }
                }
            }
        }
    }
}
