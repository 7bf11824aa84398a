// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/Highlight.h"

#include <array>

namespace zelvra {

namespace {
constexpr std::array<std::string_view, 3> rawValues{"circle", "arrow", "rectangle"};
}

std::string_view rawValue(HighlightShapeKind kind) {
    return rawValues.at(static_cast<std::size_t>(kind));
}

std::optional<HighlightShapeKind> highlightShapeKind(std::string_view rawValue) {
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (rawValues[i] == rawValue) {
            return static_cast<HighlightShapeKind>(i);
        }
    }
    return std::nullopt;
}

} // namespace zelvra
