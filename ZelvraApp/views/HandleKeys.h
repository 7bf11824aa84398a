// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Qt>

#include <optional>

namespace zelvra {

/// How far a key moves a handle on a timeline, in seconds: the left and right arrow by 0.1, with Shift by 1.
/// nullopt for other keys.
inline std::optional<double> handleStep(int key, int modifiers) {
    const double step = (modifiers & Qt::ShiftModifier) != 0 ? 1 : 0.1;
    switch (key) {
    case Qt::Key_Left: return -step;
    case Qt::Key_Right: return step;
    default: return std::nullopt;
    }
}

} // namespace zelvra
