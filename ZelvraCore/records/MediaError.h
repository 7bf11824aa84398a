// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace zelvra {

/// A failure of the media layer or the file system, thrown unchanged through the engine: a file that cannot
/// be opened, read, decoded or written. `what()` is one line in lower case without a full stop: what failed
/// and where, the reason last.
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
        internal,    ///< a state that cannot be: the fault is the program's, not the file's
    };

    MediaError(Cause cause, const std::string& line) : std::runtime_error(line), cause_(cause) {}

    /// The line "cannot `verb` '`object`': `reason`", for example "cannot write 'x.mp4': No space left on
    /// device".
    static MediaError cannot(Cause cause, std::string_view verb, std::string_view object,
                             std::string_view reason);
    static MediaError cannotRead(std::string_view file, std::string_view reason);  ///< Cause::unreadable
    static MediaError cannotWrite(std::string_view file, std::string_view reason); ///< Cause::unwritable

    Cause cause() const { return cause_; }

private:
    Cause cause_;
};

/// "cannot `verb` '`object`'", for lines that end otherwise.
std::string cannotDo(std::string_view verb, std::string_view object);

/// The system's text for an errno, such as "No space left on device".
std::string systemReason(int error);

} // namespace zelvra
