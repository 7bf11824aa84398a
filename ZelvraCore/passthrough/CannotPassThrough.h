// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>

namespace zelvra::passthrough {

/// Why a movie's compressed pictures cannot be carried over untouched. Not an error of the file: the caller
/// re-encodes instead and shows the user this reason, a clause that completes "re-encoding, because ...".
class CannotPassThrough : public std::runtime_error {
public:
    explicit CannotPassThrough(const std::string& reason) : std::runtime_error(reason) {}
};

} // namespace zelvra::passthrough
