// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"

#include <QPointer>

namespace zelvra {

/// Held by the task that carries it out. When the task ends, the session publishes that nothing is under way
/// any more. The session may be destroyed meanwhile.
class AppState::Request {
public:
    explicit Request(AppState& state) : state_(&state) {}
    ~Request() {
        if (state_) {
            state_->publishDerived();
        }
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

private:
    QPointer<AppState> state_;
};

} // namespace zelvra
