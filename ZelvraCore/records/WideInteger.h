// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace zelvra {

/// Holds the product of two times in ticks.
__extension__ using WideInteger = __int128;

} // namespace zelvra
