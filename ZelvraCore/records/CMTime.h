// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>
#include <cstdint>

namespace zelvra {

/// How a time that does not fall on a tick is brought to one.
enum class Rounding {
    nearest,    ///< halves away from zero
    down,       ///< towards negative infinity
    up,         ///< towards positive infinity
    towardZero, ///< the fraction is dropped
};

/// A point or a length on a media timeline: `value` ticks of 1/`timescale` seconds.
///
/// Arithmetic is exact while the least common multiple of the two timescales fits 31 bits. Beyond that the
/// result is carried at the greatest timescale that holds it, rounded to the nearest tick and flagged
/// `hasBeenRounded`; a result that no timescale holds is infinite. Nothing wraps around silently.
///
/// Order over all values: negative infinity < numbers < indefinite < positive infinity < invalid. Invalid
/// times equal one another, so the comparison is a total (weak) order: 1/2 and 2/4 are equal.
struct CMTime {
    enum Flags : std::uint32_t {
        valid = 1u << 0,
        hasBeenRounded = 1u << 1,
        positiveInfinityFlag = 1u << 2,
        negativeInfinityFlag = 1u << 3,
        indefiniteFlag = 1u << 4,
    };

    std::int64_t value = 0;
    std::int32_t timescale = 0; ///< ticks a second; positive in every numeric time
    std::uint32_t flags = 0;
    std::int64_t epoch = 0; ///< always 0 here

    /// An invalid time.
    constexpr CMTime() = default;
    /// `ticks` of 1/`ticksPerSecond` s. A timescale that is not positive makes an invalid time.
    constexpr CMTime(std::int64_t ticks, std::int32_t ticksPerSecond)
        : value(ticks), timescale(ticksPerSecond), flags(ticksPerSecond > 0 ? std::uint32_t{valid} : 0u) {}

    static constexpr CMTime zero() { return {0, 1}; }
    static constexpr CMTime invalid() { return {}; }
    static constexpr CMTime positiveInfinity() { return special(positiveInfinityFlag); }
    static constexpr CMTime negativeInfinity() { return special(negativeInfinityFlag); }
    static constexpr CMTime indefinite() { return special(indefiniteFlag); }

    /// The tick nearest to `seconds` (halves away from zero). Not-a-number and a timescale that is not
    /// positive give an invalid time; a value beyond 64 bits gives an infinite one.
    static CMTime fromSeconds(double seconds, std::int32_t preferredTimescale);

    constexpr bool isValid() const { return (flags & valid) != 0; }
    /// Valid, finite and definite: a number of seconds.
    constexpr bool isNumeric() const {
        return (flags & (valid | positiveInfinityFlag | negativeInfinityFlag | indefiniteFlag)) == valid;
    }
    constexpr bool isPositiveInfinity() const { return isValid() && (flags & positiveInfinityFlag) != 0; }
    constexpr bool isNegativeInfinity() const { return isValid() && (flags & negativeInfinityFlag) != 0; }
    constexpr bool isIndefinite() const { return isValid() && (flags & indefiniteFlag) != 0; }

    /// Seconds as a 64-bit float; infinities as such; not-a-number for invalid and indefinite times.
    double seconds() const;

    /// The same time in ticks of 1/`newTimescale` s, flagged `hasBeenRounded` when a fraction was lost. Times
    /// that are not numeric come back unchanged; a value beyond 64 bits becomes infinite.
    CMTime converted(std::int32_t newTimescale, Rounding rounding = Rounding::nearest) const;

private:
    static constexpr CMTime special(std::uint32_t flag) {
        CMTime time;
        time.flags = valid | flag;
        return time;
    }
};

/// An invalid operand makes the result invalid, as do infinities of opposite sign; otherwise an infinite
/// operand makes it infinite, and an indefinite one indefinite.
CMTime operator+(const CMTime& a, const CMTime& b);
CMTime operator-(const CMTime& a, const CMTime& b);
CMTime operator-(const CMTime& time);
/// Multiplies `value`; the timescale stays while the product fits.
CMTime operator*(const CMTime& time, std::int32_t factor);
CMTime operator*(std::int32_t factor, const CMTime& time);
inline CMTime& operator+=(CMTime& a, const CMTime& b) {
    return a = a + b;
}
inline CMTime& operator-=(CMTime& a, const CMTime& b) {
    return a = a - b;
}

std::weak_ordering operator<=>(const CMTime& a, const CMTime& b);
bool operator==(const CMTime& a, const CMTime& b);

/// The lesser and the greater in the order above; of equals, the first.
CMTime minimum(const CMTime& a, const CMTime& b);
CMTime maximum(const CMTime& a, const CMTime& b);

} // namespace zelvra
