// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The open clip: its picture, its timeline strip and the control bar, beside them its lists. Over the picture, the offer
// to restore what was left on the clip.
Item {
    id: view

    required property Session session
    property bool takesDrops: true
    property real sidebarWidth: 300
    // What covers the top of the view.
    property real coveredTop: 0
    signal sidebarDragged(width: real)
    signal dropped(url: url)

    readonly property int leastPlayerWidth: 520
    readonly property int leastSidebarWidth: 260

    T.SplitView {
        id: split

        anchors.fill: parent
        orientation: Qt.Horizontal
        onResizingChanged: {
            if (!resizing)
                view.sidebarDragged(sidebar.width);
        }
        handle: Rectangle {
            id: divider

            objectName: "divider"
            implicitWidth: 1
            color: T.SplitHandle.pressed || T.SplitHandle.hovered ? Theme.tertiary : Theme.separator
            containmentMask: Item {
                x: -4
                width: 9
                height: divider.height
            }
        }

        Item {
            T.SplitView.fillWidth: true
            T.SplitView.minimumWidth: view.leastPlayerWidth

            PlayerView {
                id: player

                objectName: "playerArea"
                anchors.top: parent.top
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: strip.top
                focus: true
                session: view.session
                overlay: [
                    DropOutline {
                        anchors.fill: parent
                        anchors.margins: 16
                        color: Theme.over(Theme.vivid, 0.9)
                        shown: drop.isTargeted
                    },
                    HighlightPreviewOverlay {
                        anchors.fill: parent
                        session: view.session
                    },
                    Card {
                        anchors.centerIn: parent
                        width: 64
                        height: 64
                        opacity: spinner.opacity
                        visible: spinner.visible

                        Spinner {
                            id: spinner

                            objectName: "spinner"
                            anchors.centerIn: parent
                            running: view.session.isOpening || view.session.isGrabbingFrame
                        }
                    }
                ]
            }
            TimelineRow {
                id: strip

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: controls.top
                session: view.session
            }
            ControlBar {
                id: controls

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                session: view.session
            }
        }
        HighlightsSidebar {
            id: sidebar

            T.SplitView.minimumWidth: view.leastSidebarWidth
            T.SplitView.maximumWidth: Math.max(view.leastSidebarWidth, split.width - view.leastPlayerWidth - 1)
            T.SplitView.preferredWidth: view.sidebarWidth
            session: view.session
        }
    }
    SlidingCard {
        x: Math.max(0, Math.min((view.width - width) / 2, player.width - width - 16))
        y: 12 + view.coveredTop
        shown: view.session.hasLeftWork

        LeftWorkOffer {
            session: view.session
            widest: player.width - 56 // the margins of the view and of the card
        }

        Behavior on y {
            NumberAnimation {
                duration: Theme.motion
                easing.type: Easing.InOutQuad
            }
        }
    }
    FileDrop {
        id: drop

        objectName: "clipDrop"
        anchors.fill: parent
        enabled: view.takesDrops
        onOffered: url => view.dropped(url)
    }
}
