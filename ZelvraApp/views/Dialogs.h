// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/bridge/Session.h"

#include <QObject>
#include <qqml.h>

#include <vector>

namespace zelvra {

/// Which of the session's questions is up. The session asks each by a flag of its own. Here they wait in a
/// line, so that one shows at a time, and the next one when it is dismissed. While the editor is open only an
/// error shows, over the editor. Main thread. The session outlives it.
class Dialogs : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    Q_PROPERTY(Question current READ current NOTIFY changed)
    /// A question or the editor is up: nothing else should come over the window.
    Q_PROPERTY(bool anyUp READ anyUp NOTIFY changed)

public:
    enum Question { None, ErrorAlert, ScopePrompt, CloseConfirmation, PostExport };
    Q_ENUM(Question)

    explicit Dialogs(Session& session, QObject* parent = nullptr);

    Question current() const;
    bool anyUp() const { return current() != None || session_.hasDraft(); }
    /// A question waits for its answer, shown or not.
    bool anyWaiting() const { return !line_.empty(); }

    /// The question was closed; resets its flag.
    Q_INVOKABLE void dismiss(Question question);

Q_SIGNALS:
    void changed();

private:
    void want(Question question, bool wanted);

    Session& session_;
    std::vector<Question> line_; ///< that wait, in the order in which they came
};

} // namespace zelvra
