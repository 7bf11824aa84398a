// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Names for what every operation on coded video takes and gives: bytes that somebody else owns, and bytes of
/// one's own.
namespace zelvra::bitstream {

using ByteView = std::span<const std::uint8_t>;
using Bytes = std::vector<std::uint8_t>;

} // namespace zelvra::bitstream
