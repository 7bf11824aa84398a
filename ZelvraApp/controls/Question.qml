// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Zelvra.Controls

// A question over its window: title, text, and the answers one below the other. Esc chooses the answer that cancels;
// if there is none, it only closes the question. Return chooses the prominent answer, which is destructive only if all
// answers are.
//
// `answers` are { text, role ("", "cancel" or "destructive"), action }. `dismissed` is emitted once, however the
// question is closed, before the action of the chosen answer.
T.Popup {
    id: question

    property string title
    property string message
    property var answers: []
    signal dismissed

    property var chosen: null
    readonly property var cancelling: question.answers.find(answer => answer.role === "cancel")

    function choose(answer: var) {
        question.chosen = answer;
        question.close();
    }

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: 380
    padding: 20
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    implicitHeight: contentItem.implicitHeight + 2 * padding
    onOpened: column.forceActiveFocus()
    onClosed: {
        const answer = question.chosen ?? question.cancelling;
        question.chosen = null;
        question.dismissed();
        if (answer?.action)
            answer.action();
    }

    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
    background: Card {
        color: Theme.card
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.quickMotion
        }
    }
    contentItem: ColumnLayout {
        id: column

        readonly property var prominent: question.answers.find(answer => answer.role !== "cancel" && answer.role !== "destructive") ?? question.cancelling ?? question.answers[0]

        spacing: 8
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: question.title
        Accessible.description: question.message
        Keys.onReturnPressed: question.choose(column.prominent)
        Keys.onEnterPressed: question.choose(column.prominent)

        Headline {
            objectName: "questionTitle"
            Layout.fillWidth: true
            text: question.title
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
        }
        SecondaryText {
            objectName: "questionMessage"
            Layout.fillWidth: true
            Layout.bottomMargin: 8
            visible: text !== ""
            text: question.message
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
        }
        Repeater {
            model: question.answers
            PushButton {
                required property var modelData

                Layout.fillWidth: true
                objectName: "answer:" + modelData.text
                text: modelData.text
                controlHeight: Theme.largeControlHeight
                look: modelData.text === column.prominent.text ? PushButton.Prominent : PushButton.Regular
                tint: modelData.role === "destructive" ? Theme.destructive : Theme.primary
                onClicked: question.choose(modelData)
            }
        }
    }
}
