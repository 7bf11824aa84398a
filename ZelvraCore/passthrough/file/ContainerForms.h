// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// What MP4 and QuickTime write differently though they mean the same: boxes of a source brought into the
/// form of the output's container. Pure; whatever is not known is kept as it is.

/// Whole boxes of user data (`udta`, `meta`). QuickTime's `meta` has no version and flags, MP4's has (ISO/IEC
/// 14496-12 clause 8.11.1). Chapter lists go, as freezes move what they point at.
std::vector<std::uint8_t> userDataFor(MovieContainer container, std::span<const std::uint8_t> boxes);

/// A whole visual sample entry. QuickTime's colours are `nclc`, MP4's `nclx`, which also says whether samples
/// use the full range (ISO/IEC 14496-12 clause 12.1.5).
std::vector<std::uint8_t> visualEntryFor(MovieContainer container, std::span<const std::uint8_t> entry,
                                         bool fullRange);

} // namespace zelvra::passthrough
