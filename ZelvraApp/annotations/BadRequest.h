// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>

namespace zelvra {

/// A text that cannot be understood: a time, a highlight, a document, a command line. `what()` is one line
/// for the user.
class BadRequest : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace zelvra
