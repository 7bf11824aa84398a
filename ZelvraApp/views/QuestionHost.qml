// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Zelvra.Session
import Zelvra.Controls
import Zelvra.Views

// Shows the question whose turn it is, over the window that it stands in.
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
                title: "Something went wrong"
                message: host.session.errorMessage
                answers: [
                    {
                        text: "OK",
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
                title: "Use these settings for future highlights?"
                message: "You changed the color, size, stroke, or freeze duration on that highlight. Where should new highlights start from these settings? (Esc keeps your current defaults.)"
                answers: [
                    {
                        text: "Always (Save as My Defaults)",
                        action: () => host.session.useStyleAlways()
                    },
                    {
                        text: "For This Session",
                        action: () => host.session.useStyleForThisSession()
                    },
                    {
                        text: "Just This Clip",
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
                title: "Close this clip?"
                message: Texts.closeMessage(host.session.highlightCount, host.session.markedClipCount)
                answers: [
                    {
                        text: "Close and Discard",
                        role: "destructive",
                        action: () => host.dialogs.closeAndDiscard()
                    },
                    {
                        text: "Cancel",
                        role: "cancel",
                        action: () => host.dialogs.keepOpen()
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
                        text: "Open New Video…",
                        action: () => host.session.closeAndOpenVideo()
                    },
                    {
                        text: "Open Folder of Clips…",
                        action: () => host.session.closeAndOpenFolder()
                    },
                    {
                        text: "Stay with Current Clip",
                        role: "cancel"
                    },
                    {
                        text: "Quit",
                        role: "destructive",
                        action: () => host.session.quit()
                    }
                ]

                visible: true
                title: "Export complete"
                message: Texts.postExportMessage(host.session.lastExportURL)
                answers: host.session.canGoNext ? [next, ...others] : others
                onDismissed: host.dialogs.dismiss(Dialogs.PostExport)
            }
        }
    }
}
