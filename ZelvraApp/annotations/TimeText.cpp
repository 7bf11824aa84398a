// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/TimeText.h"

#include "ZelvraCore/records/ZVError.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>

namespace zelvra {
namespace {

/// Longer than any recording, and far below the limit of 64 bits.
constexpr std::int64_t maxSeconds = 1'000'000'000;

/// A number that consists of digits only.
template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const bool digitsOnly = text.find_first_not_of("0123456789") == std::string_view::npos;
    return error == std::errc() && stop == end && digitsOnly ? std::optional(number) : std::nullopt;
}

std::optional<CMTime> fractionOfTicks(std::string_view text, std::size_t slash) {
    const auto ticks = wholeNumber<std::int64_t>(text.substr(0, slash));
    const auto timescale = wholeNumber<std::int32_t>(text.substr(slash + 1));
    if (!ticks || !timescale || *timescale == 0) {
        return std::nullopt;
    }
    return CMTime(*ticks, *timescale);
}

/// Ticks of ".25", rounded to nearest. Digits after the twelfth cannot change the result.
std::optional<std::int64_t> decimalTicks(std::string_view digits) {
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    std::int64_t number = 0;
    std::int64_t scale = 1;
    for (const char digit : digits.substr(0, 12)) {
        number = number * 10 + (digit - '0');
        scale *= 10;
    }
    return (number * typedTimescale + scale / 2) / scale;
}

/// "75.5", "01:15.5", "1:02:03": whole units of 60 before each colon.
std::optional<CMTime> clockTime(std::string_view text) {
    const std::size_t point = text.find('.');
    const auto decimals = point == std::string_view::npos ? std::optional<std::int64_t>(0)
                                                          : decimalTicks(text.substr(point + 1));
    std::string_view rest = text.substr(0, point);
    std::int64_t seconds = 0;
    int parts = 0;
    while (true) {
        const std::size_t colon = rest.find(':');
        const auto part = wholeNumber<std::int64_t>(rest.substr(0, colon));
        if (!part || *part > maxSeconds || (parts > 0 && *part >= 60)) {
            return std::nullopt;
        }
        seconds = seconds * 60 + *part;
        ++parts;
        if (colon == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(colon + 1);
    }
    if (!decimals || parts > 3 || seconds > maxSeconds) {
        return std::nullopt;
    }
    return CMTime(seconds * typedTimescale + *decimals, typedTimescale);
}

} // namespace

CMTime parseTime(std::string_view text) {
    const std::size_t slash = text.find('/');
    const std::optional<CMTime> time =
        slash == std::string_view::npos ? clockTime(text) : fractionOfTicks(text, slash);
    if (!time) {
        throw ZVError::invalidTimestamp(std::string(text));
    }
    return *time;
}

CMTime timeFromSeconds(double seconds) {
    if (!(seconds >= 0 && seconds <= static_cast<double>(maxSeconds))) {
        throw ZVError::invalidTimestamp(std::to_string(seconds));
    }
    return CMTime::fromSeconds(seconds, typedTimescale);
}

std::string clockText(double seconds) {
    const long long total = std::llround(std::max(0.0, seconds));
    char text[48];
    if (total < 3600) {
        std::snprintf(text, sizeof text, "%lld:%02lld", total / 60, total % 60);
    } else {
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", total / 3600, total / 60 % 60, total % 60);
    }
    return text;
}

} // namespace zelvra
