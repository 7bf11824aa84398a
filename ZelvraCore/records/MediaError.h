// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>

namespace zelvra {

/// A failure of the media layer or the file system, thrown unchanged through the engine: a file that cannot
/// be opened, read, decoded or written. `what()` is one plain line that names the file where that helps.
class MediaError : public std::runtime_error {
public:
    enum class Cause {
        unreadable,  ///< cannot be opened or read: missing, no permission, an input error
        unsupported, ///< intact, but of a kind that is not handled (container, codec, encryption)
        corrupt,     ///< contradicts its own format
        outOfRange,  ///< a time outside the movie
        unwritable,  ///< output cannot be created, written, flushed or renamed: disk full, read-only folder
        refused,     ///< a request that would do harm, such as an output that is the source itself
        cancelled,   ///< the caller's stop token asked for an end
    };

    MediaError(Cause cause, const std::string& line) : std::runtime_error(line), cause_(cause) {}

    Cause cause() const { return cause_; }

private:
    Cause cause_;
};

} // namespace zelvra
