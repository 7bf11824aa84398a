// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelvra {

/// What a movie file is known by, whatever its name, folder and times are: media::identifyMovie computes it
/// from the file's bytes. Equal identities mean the same file or a copy of it.
struct MovieIdentity {
    std::uint64_t size = 0;                ///< of the file, in bytes
    std::array<std::uint8_t, 16> digest{}; ///< of its index, its first and its last bytes

    /// "SIZE-DIGEST": decimal digits and 32 lower-case hexadecimal ones. Fit for a file name.
    std::string text() const;
    /// The identity of exactly such a text; `nullopt` for any other.
    static std::optional<MovieIdentity> fromText(std::string_view text);

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the compared 0 for a pointer
    auto operator<=>(const MovieIdentity&) const = default;
};

} // namespace zelvra
