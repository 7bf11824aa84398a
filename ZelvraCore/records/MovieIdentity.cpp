// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/MovieIdentity.h"

#include "ZelvraCore/records/HexText.h"

#include <algorithm>
#include <charconv>

namespace zelvra {

std::string MovieIdentity::text() const {
    return std::to_string(size) + "-" + hexText(digest);
}

std::optional<MovieIdentity> MovieIdentity::fromText(std::string_view text) {
    MovieIdentity identity;
    const std::size_t hyphen = std::min(text.find('-'), text.size());
    std::from_chars(text.data(), text.data() + hyphen, identity.size);
    const auto digest = bytesOfHexText(text.substr(std::min(hyphen + 1, text.size())));
    if (!digest || digest->size() != identity.digest.size()) {
        return std::nullopt;
    }
    std::ranges::copy(*digest, identity.digest.begin());
    return identity.text() == text ? std::optional(identity) : std::nullopt; // one spelling only
}

} // namespace zelvra
