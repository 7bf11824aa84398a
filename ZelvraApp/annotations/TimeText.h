// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/CMTime.h"

#include <string>
#include <string_view>

namespace zelvra {

/// Times as people type them and as scripts pass them on.
///
/// Decimal seconds become ticks of 1/360000 s. Thousandths and the frame times of all usual rates (23.976 to
/// 240 a second) are whole ticks. Therefore a time that a tool printed with six decimals finds exactly the
/// frame that it was printed for. A fraction of ticks is kept as it is.
constexpr std::int32_t typedTimescale = 360'000;

/// Reads "12.5" (seconds), "01:15.50" (minutes), "1:02:03" (hours) or "900/600" (ticks and ticks a second).
/// Throws ZVError::invalidTimestamp with the text for anything else, including negative times.
CMTime parseTime(std::string_view text);

/// The same for a number of seconds.
CMTime timeFromSeconds(double seconds);

/// Minutes and seconds for people: "1:15", "0:02", "1:02:03". Rounded to the second; never negative.
std::string clockText(double seconds);

} // namespace zelvra
