// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// The types of bytes that all operations on coded video take and return: borrowed bytes (`ByteView`) and
/// owned bytes (`Bytes`).
namespace zelvra::bitstream {

using ByteView = std::span<const std::uint8_t>;
using Bytes = std::vector<std::uint8_t>;

} // namespace zelvra::bitstream
