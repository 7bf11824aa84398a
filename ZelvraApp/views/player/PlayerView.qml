// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The movie on black, with controls that appear where the pointer is and fade when it rests. `overlay` lies
// over the picture. In full screen it covers the window.
FocusScope {
    id: view

    required property Session session
    property alias overlay: overlayHolder.data
    readonly property alias controls: controls
    property bool fullScreen: false
    property int windowedVisibility: Window.Windowed

    onFullScreenChanged: {
        const window = view.Window.window;
        if (view.fullScreen) {
            view.windowedVisibility = window.visibility;
            window.showFullScreen();
        } else if (window.visibility === Window.FullScreen) {
            window.visibility = view.windowedVisibility;
        }
    }
    Connections {
        target: view.Window.window
        function onVisibilityChanged() {
            if (view.Window.window.visibility !== Window.FullScreen)
                view.fullScreen = false;
        }
    }
    Connections {
        target: view.session
        function onVideoChanged() {
            view.fullScreen = false;
        }
    }

    // Returns true if the player has used the key.
    function handleKey(event: var): bool {
        if (trim.active && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)) {
            trim.confirm();
            return true;
        }
        if (event.key === Qt.Key_Escape && (trim.active || view.fullScreen)) {
            if (trim.active)
                trim.cancel();
            else
                view.fullScreen = false;
            return true;
        }
        return controls.handleKey(event.key, event.modifiers, event.isAutoRepeat);
    }

    Keys.onPressed: event => event.accepted = view.handleKey(event)
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Player")

    PlayerControls {
        id: controls

        session: view.session
    }
    TrimView {
        id: trim

        session: view.session
    }

    // In full screen, over everything else in the window.
    Item {
        parent: view.fullScreen ? view.Window.window.contentItem : view
        anchors.fill: parent
        z: view.fullScreen ? 1 : 0

        Rectangle {
            anchors.fill: parent
            color: Theme.picture
        }
        PlayerSurface {
            id: surface

            objectName: "playerSurface"
            anchors.fill: parent
            session: view.session
        }
        TapHandler {
            enabled: !trim.active
            onTapped: {
                view.forceActiveFocus();
                controls.togglePlaying();
            }
            onDoubleTapped: view.fullScreen = !view.fullScreen
        }
        Item {
            id: overlayHolder

            anchors.fill: parent
        }

        // The controls stay visible while the pointer moves over the picture or is over them.
        HoverHandler {
            id: hover

            cursorShape: bar.opacity === 0 && view.fullScreen ? Qt.BlankCursor : Qt.ArrowCursor
            onPointChanged: rest.restart()
        }
        Timer {
            id: rest

            interval: Theme.idleDelay
        }
        InlineControls {
            id: bar

            readonly property bool wanted: bar.busy || bar.activeFocus || (hover.hovered && (rest.running || !controls.isPlaying))

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 16
            width: Math.min(parent.width - 32, 620)
            controls: controls
            session: view.session
            fullScreen: view.fullScreen
            opacity: wanted ? 1 : 0
            visible: opacity > 0 && !trim.active
            onFullScreenToggled: view.fullScreen = !view.fullScreen

            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.motion
                }
            }
        }
        TrimBar {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 16
            width: parent.width - 32
            session: view.session
            trim: trim
            visible: trim.active
            onVisibleChanged: if (visible)
                view.forceActiveFocus()
        }
    }
}
