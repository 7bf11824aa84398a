// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace zelvra {

/// Width of a pixel divided by its height.
struct PixelAspect {
    int horizontal = 1;
    int vertical = 1;
    bool operator==(const PixelAspect&) const = default;
};

} // namespace zelvra
