// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/HighlightDefaults.h"
#include "ZelvraApp/annotations/MarkedClip.h"
#include "ZelvraCore/records/SourceInfo.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace zelvra {

/// Whether two values are the same in every field. Decides whether a published field has changed. Stricter
/// than `==`, which for times means the same moment and for styles the same look.

template <class Value>
    requires requires(const Value& a, const Value& b) { a == b; }
bool identical(const Value& a, const Value& b) {
    return a == b;
}

bool identical(const CMTime& a, const CMTime& b);
bool identical(const CMTimeRange& a, const CMTimeRange& b);
bool identical(const Highlight& a, const Highlight& b);
bool identical(const HighlightDefaults& a, const HighlightDefaults& b);
bool identical(const MarkedClip& a, const MarkedClip& b);
bool identical(const SourceInfo& a, const SourceInfo& b);

template <class Value>
bool identical(const std::vector<Value>& a, const std::vector<Value>& b) {
    return std::ranges::equal(a, b, [](const Value& x, const Value& y) { return identical(x, y); });
}

template <class Value>
bool identical(const std::optional<Value>& a, const std::optional<Value>& b) {
    return a.has_value() == b.has_value() && (!a || identical(*a, *b));
}

} // namespace zelvra
