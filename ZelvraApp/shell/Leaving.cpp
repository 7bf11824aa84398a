// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/Leaving.h"

#include <QTimer>

namespace zelvra {

Leaving::Leaving(AppState& state, Terminator& end, QObject* parent)
    : QObject(parent), state_(state), end_(end) {
    connect(&state, &AppState::isExportingChanged, this, &Leaving::stay);
    connect(&state, &AppState::videoURLChanged, this, &Leaving::leaveOnceClosed);
    connect(&state, &AppState::showCloseConfirmationChanged, this, [this] {
        // The question is closed before its answer takes effect. If the answer closes no clip, it was to
        // stay.
        if (!state_.showCloseConfirmation()) {
            QTimer::singleShot(0, this, [this] { leavesOnceClosed_ = false; });
        }
    });
}

void Leaving::request() {
    if (state_.isExporting()) {
        setAsksAboutExport(true);
        return;
    }
    if (state_.closingLosesWork()) {
        leavesOnceClosed_ = true;
        state_.requestCloseVideo();
        return;
    }
    end_.terminate();
}

void Leaving::leaveOnceClosed() {
    if (leavesOnceClosed_ && !state_.videoFile()) {
        leavesOnceClosed_ = false;
        end_.terminate();
    }
}

void Leaving::stopExportAndLeave() {
    setAsksAboutExport(false);
    end_.terminate(); // the session stops its export when it goes
}

void Leaving::stay() {
    setAsksAboutExport(false);
}

void Leaving::setAsksAboutExport(bool on) {
    if (std::exchange(asksAboutExport_, on) != on) {
        Q_EMIT asksAboutExportChanged();
    }
}

} // namespace zelvra
