// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/MediaError.h"

#include <stop_token>

namespace zelvra {

/// Throws MediaError `cancelled` once `stop` asks for an end.
inline void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested()) {
        throw MediaError(MediaError::Cause::cancelled, "cancelled");
    }
}

} // namespace zelvra
