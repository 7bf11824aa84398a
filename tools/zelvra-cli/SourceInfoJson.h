// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/SourceInfo.h"

#include <string>

namespace zelvra::cli {

/// The properties of a movie as a JSON object of several lines, without a final line break. Sizes are in
/// square pixels, times in ticks and in seconds; an unknown codec is null.
std::string sourceInfoJson(const SourceInfo& info);

} // namespace zelvra::cli
