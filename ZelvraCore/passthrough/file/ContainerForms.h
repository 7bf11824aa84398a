// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// Converts boxes of a source that MP4 and QuickTime write in different forms to the form of the output's
/// container. Pure; unknown boxes are kept as they are.

/// Whole boxes of user data (`udta`, `meta`). QuickTime's `meta` has no version and flags, MP4's has (ISO/IEC
/// 14496-12 clause 8.11.1). Chapter lists are left out, as freezes move what they point to.
std::vector<std::uint8_t> userDataFor(MovieContainer container, std::span<const std::uint8_t> boxes);

/// A whole visual sample entry. QuickTime's colours are `nclc`, MP4's `nclx`, which also says whether samples
/// use the full range (ISO/IEC 14496-12 clause 12.1.5).
std::vector<std::uint8_t> visualEntryFor(MovieContainer container, std::span<const std::uint8_t> entry,
                                         bool fullRange);

} // namespace zelvra::passthrough
