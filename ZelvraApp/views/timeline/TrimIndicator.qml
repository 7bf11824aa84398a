// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// The trim's range, and a button that clears the trim.
Rectangle {
    id: badge

    required property Session session
    required property double start
    required property double end
    required property bool isEditingQueuedClip
    // Shows the range in the tooltip only.
    property bool compact: false
    signal cleared

    readonly property real rangeWidth: range.implicitWidth + row.spacing
    readonly property real fullWidth: 14 + 16 + 2 * row.spacing + range.implicitWidth + 20

    objectName: "trimBadge"
    implicitWidth: fullWidth - (compact ? rangeWidth : 0)
    implicitHeight: row.implicitHeight + 8
    radius: height / 2
    color: Theme.over(Theme.accent, 0.18)
    border.width: 1
    border.color: Theme.over(Theme.accent, 0.35)

    Tipped {
        anchors.fill: parent
        tip: badge.compact && !clear.hovered ? range.text : ""
    }
    Row {
        id: row

        anchors.centerIn: parent
        spacing: 6

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            name: badge.isEditingQueuedClip ? "edit" : "content_cut"
            size: 14
        }
        CaptionDigits {
            id: range

            objectName: "trimBadgeRange"
            anchors.verticalCenter: parent.verticalCenter
            visible: !badge.compact
            text: badge.session.rangeText(badge.start, badge.end)
            color: Theme.primary
        }
        Tipped {
            id: clear

            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            tip: Texts.trimBadgeTip(badge.isEditingQueuedClip)

            PushButton {
                objectName: "clearTrim"
                width: 16
                height: 16
                look: PushButton.Borderless
                iconName: "cancel"
                iconSize: 15
                leftPadding: 0
                Accessible.name: clear.tip
                onClicked: badge.cleared()
            }
        }
    }
}
