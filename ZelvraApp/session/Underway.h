// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/AppState.h"

#include <QPointer>

namespace zelvra {

/// Work of the session that takes time, counted in one of its fields from here to the end of the scope, so
/// that a window can show that something is going on. The session may go away meanwhile.
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
