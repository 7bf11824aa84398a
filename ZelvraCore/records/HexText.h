// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelvra {

/// Two lower-case hexadecimal digits for each byte.
std::string hexText(std::span<const std::uint8_t> bytes);

/// The bytes of such a text, with digits of either case; `nullopt` for any other text.
std::optional<std::vector<std::uint8_t>> bytesOfHexText(std::string_view text);

} // namespace zelvra
