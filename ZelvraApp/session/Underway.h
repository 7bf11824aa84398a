// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"

#include <QPointer>

namespace zelvra {

/// Counts a piece of work of the session, in one of its fields, until the end of the scope, so that a window
/// can show that work goes on. The session may be destroyed meanwhile.
class AppState::Underway {
public:
    Underway(AppState& state, int AppState::* count) : state_(&state), count_(count) { add(1); }
    ~Underway() { add(-1); }
    Underway(const Underway&) = delete;
    Underway& operator=(const Underway&) = delete;

private:
    void add(int change) {
        if (state_) {
            state_->*count_ += change;
            state_->publishDerived();
        }
    }

    QPointer<AppState> state_;
    int AppState::* count_;
};

} // namespace zelvra
