// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelvra {

/// A 128-bit identifier (RFC 4122).
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A new random one (version 4). Any thread.
    static Uuid random();

    /// Upper-case hexadecimal groups joined by hyphens, 36 characters.
    std::string text() const;
    /// The identifier of such a text, with digits of either case; `nullopt` for any other text.
    static std::optional<Uuid> fromText(std::string_view text);

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the compared 0 for a pointer
    auto operator<=>(const Uuid&) const = default;
};

} // namespace zelvra
