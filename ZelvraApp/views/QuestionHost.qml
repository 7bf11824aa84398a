// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// Shows the current question over the window.
Loader {
    id: host

    required property Session session
    required property Dialogs dialogs
    property bool available: true

    sourceComponent: {
        if (!host.available)
            return null;
        switch (host.dialogs.current) {
        case Dialogs.ErrorAlert:
            return errorAlert;
        case Dialogs.ScopePrompt:
            return scopePrompt;
        case Dialogs.CloseConfirmation:
            return closeConfirmation;
        case Dialogs.PostExport:
            return postExport;
        default:
            return null;
        }
    }

    Component {
        id: errorAlert

        Item {
            Question {
                objectName: "errorAlert"
                visible: true
                title: qsTr("Something went wrong")
                message: host.session.errorMessage
                answers: [
                    {
                        text: qsTr("OK"),
                        role: "cancel"
                    }
                ]
                onDismissed: host.dialogs.dismiss(Dialogs.ErrorAlert)
            }
        }
    }
    Component {
        id: scopePrompt

        Item {
            Question {
                objectName: "scopePrompt"
                visible: true
                title: qsTr("Use these settings for future highlights?")
                message: qsTr("You changed the color, size, stroke, or freeze duration on that highlight. Where should new highlights start from these settings? (Esc keeps your current defaults.)")
                answers: [
                    {
                        text: qsTr("Always (Save as My Defaults)"),
                        action: () => host.session.useStyleAlways()
                    },
                    {
                        text: qsTr("For This Session"),
                        action: () => host.session.useStyleForThisSession()
                    },
                    {
                        text: qsTr("Just This Clip"),
                        action: () => host.session.useStyleForThisClip()
                    }
                ]
                onDismissed: host.dialogs.dismiss(Dialogs.ScopePrompt)
            }
        }
    }
    Component {
        id: closeConfirmation

        Item {
            Question {
                objectName: "closeConfirmation"
                visible: true
                title: qsTr("Close this clip?")
                message: Texts.closeMessage(host.session.highlightCount, host.session.markedClipCount)
                answers: [
                    {
                        text: qsTr("Close and Discard"),
                        role: "destructive",
                        action: () => host.session.closeAndDiscard()
                    },
                    {
                        text: qsTr("Cancel"),
                        role: "cancel",
                        action: () => host.session.keepClipOpen()
                    }
                ]
                onDismissed: host.dialogs.dismiss(Dialogs.CloseConfirmation)
            }
        }
    }
    Component {
        id: postExport

        Item {
            Question {
                objectName: "postExport"

                readonly property var next: ({
                        text: Texts.nextClipAnswer(host.session.queueIndex, host.session.queueLength),
                        action: () => host.session.nextClip()
                    })
                readonly property var others: [
                    {
                        text: qsTr("Open New Video…"),
                        action: () => host.session.closeAndOpenVideo()
                    },
                    {
                        text: qsTr("Open Folder of Clips…"),
                        action: () => host.session.closeAndOpenFolder()
                    },
                    {
                        text: qsTr("Stay with Current Clip"),
                        role: "cancel"
                    },
                    {
                        text: qsTr("Quit"),
                        role: "destructive",
                        action: () => host.session.quit()
                    }
                ]

                visible: true
                title: qsTr("Export complete")
                message: Texts.postExportMessage(host.session.lastExportURL)
                answers: host.session.canGoNext ? [next, ...others] : others
                onDismissed: host.dialogs.dismiss(Dialogs.PostExport)
            }
        }
    }
}
