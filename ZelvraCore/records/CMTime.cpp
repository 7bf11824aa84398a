// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/CMTime.h"

#include "ZelvraCore/records/WideInteger.h"

#include <cmath>
#include <limits>
#include <numeric>

namespace zelvra {

namespace {

constexpr std::int32_t greatestTimescale = std::numeric_limits<std::int32_t>::max();

constexpr bool fits(WideInteger value) {
    return value >= std::numeric_limits<std::int64_t>::min() &&
           value <= std::numeric_limits<std::int64_t>::max();
}

WideInteger divide(WideInteger numerator, WideInteger denominator, Rounding rounding) {
    const WideInteger quotient = numerator / denominator;
    const WideInteger remainder = numerator % denominator;
    if (remainder == 0) {
        return quotient;
    }
    const WideInteger awayFromZero = numerator < 0 ? -1 : 1;
    switch (rounding) {
    case Rounding::nearest: {
        const WideInteger twice = 2 * (remainder < 0 ? -remainder : remainder);
        return twice >= denominator ? quotient + awayFromZero : quotient;
    }
    case Rounding::down: return numerator < 0 ? quotient - 1 : quotient;
    case Rounding::up: return numerator > 0 ? quotient + 1 : quotient;
    case Rounding::towardZero: break;
    }
    return quotient;
}

CMTime infinite(bool negative) {
    return negative ? CMTime::negativeInfinity() : CMTime::positiveInfinity();
}

/// `numerator` / `denominator` seconds at `timescale`, or at the greatest halving of it that holds the value.
CMTime carried(WideInteger numerator, WideInteger denominator, std::int32_t timescale, bool rounded) {
    for (; timescale >= 1; timescale /= 2) {
        // A sum of two products of 63 and 31 bits stays below 2^95; times a timescale, below 2^126.
        const WideInteger ticks = divide(numerator * timescale, denominator, Rounding::nearest);
        if (fits(ticks)) {
            CMTime time(static_cast<std::int64_t>(ticks), timescale);
            if (rounded || ticks * denominator != numerator * timescale) {
                time.flags |= CMTime::hasBeenRounded;
            }
            return time;
        }
        rounded = true;
    }
    return infinite(numerator < 0);
}

/// Rank in the total order; numbers share one rank.
int rank(const CMTime& time) {
    if (!time.isValid()) {
        return 4;
    }
    if (time.isPositiveInfinity()) {
        return 3;
    }
    if (time.isIndefinite()) {
        return 2;
    }
    return time.isNegativeInfinity() ? 0 : 1;
}

} // namespace

CMTime CMTime::fromSeconds(double seconds, std::int32_t preferredTimescale) {
    if (std::isnan(seconds) || preferredTimescale <= 0) {
        return invalid();
    }
    const double ticks = std::round(seconds * preferredTimescale);
    constexpr double limit = 0x1p63;
    if (!(ticks < limit) || ticks < -limit) {
        return infinite(ticks < 0);
    }
    return {static_cast<std::int64_t>(ticks), preferredTimescale};
}

double CMTime::seconds() const {
    if (isNumeric()) {
        return static_cast<double>(value) / timescale;
    }
    if (isPositiveInfinity() || isNegativeInfinity()) {
        const double infinity = std::numeric_limits<double>::infinity();
        return isPositiveInfinity() ? infinity : -infinity;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

CMTime CMTime::converted(std::int32_t newTimescale, Rounding rounding) const {
    if (!isNumeric() || newTimescale == timescale) {
        return *this;
    }
    if (newTimescale <= 0) {
        return invalid();
    }
    const WideInteger scaled = WideInteger{value} * newTimescale;
    const WideInteger ticks = divide(scaled, timescale, rounding);
    if (!fits(ticks)) {
        return infinite(value < 0);
    }
    CMTime result(static_cast<std::int64_t>(ticks), newTimescale);
    if ((flags & hasBeenRounded) != 0 || ticks * timescale != scaled) {
        result.flags |= hasBeenRounded;
    }
    return result;
}

CMTime operator+(const CMTime& a, const CMTime& b) {
    if (!a.isValid() || !b.isValid()) {
        return CMTime::invalid();
    }
    const bool up = a.isPositiveInfinity() || b.isPositiveInfinity();
    const bool down = a.isNegativeInfinity() || b.isNegativeInfinity();
    if (up || down) {
        return up && down ? CMTime::invalid() : infinite(down);
    }
    if (a.isIndefinite() || b.isIndefinite()) {
        return CMTime::indefinite();
    }
    const bool rounded = ((a.flags | b.flags) & CMTime::hasBeenRounded) != 0;
    const std::int64_t common = std::lcm(std::int64_t{a.timescale}, std::int64_t{b.timescale});
    const WideInteger numerator =
        WideInteger{a.value} * (common / a.timescale) + WideInteger{b.value} * (common / b.timescale);
    const std::int64_t timescale = common <= greatestTimescale ? common : greatestTimescale;
    if (common == timescale && fits(numerator)) {
        CMTime sum(static_cast<std::int64_t>(numerator), static_cast<std::int32_t>(timescale));
        sum.flags |= rounded ? std::uint32_t{CMTime::hasBeenRounded} : 0u;
        return sum;
    }
    return carried(numerator, common, static_cast<std::int32_t>(timescale), rounded);
}

CMTime operator-(const CMTime& time) {
    if (time.isPositiveInfinity() || time.isNegativeInfinity()) {
        return infinite(time.isPositiveInfinity());
    }
    if (!time.isNumeric()) {
        return time;
    }
    if (time.value == std::numeric_limits<std::int64_t>::min()) {
        return carried(-WideInteger{time.value}, time.timescale, time.timescale, false);
    }
    CMTime negated = time;
    negated.value = -time.value;
    return negated;
}

CMTime operator-(const CMTime& a, const CMTime& b) {
    return a + -b;
}

CMTime operator*(const CMTime& time, std::int32_t factor) {
    if (!time.isNumeric()) {
        return factor < 0 ? -time : time;
    }
    const bool rounded = (time.flags & CMTime::hasBeenRounded) != 0;
    return carried(WideInteger{time.value} * factor, time.timescale, time.timescale, rounded);
}

CMTime operator*(std::int32_t factor, const CMTime& time) {
    return time * factor;
}

std::weak_ordering operator<=>(const CMTime& a, const CMTime& b) {
    if (a.isNumeric() && b.isNumeric()) {
        const WideInteger left = WideInteger{a.value} * b.timescale;
        const WideInteger right = WideInteger{b.value} * a.timescale;
        return left < right   ? std::weak_ordering::less
               : left > right ? std::weak_ordering::greater
                              : std::weak_ordering::equivalent;
    }
    return rank(a) <=> rank(b);
}

bool operator==(const CMTime& a, const CMTime& b) {
    return (a <=> b) == 0;
}

CMTime minimum(const CMTime& a, const CMTime& b) {
    return b < a ? b : a;
}
CMTime maximum(const CMTime& a, const CMTime& b) {
    return b > a ? b : a;
}

} // namespace zelvra
