// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/MediaError.h"

namespace zelvra::bitstream {

/// Coded video that cannot be read, or that uses features not handled here. A caller that plans a passthrough
/// movie catches it and re-encodes instead. `cause()` is `corrupt` if the stream is at fault, and
/// `unsupported` if the stream is valid.
class BitstreamError : public MediaError {
public:
    static BitstreamError corrupt(const std::string& line) { return {Cause::corrupt, line}; }
    static BitstreamError unsupported(const std::string& line) { return {Cause::unsupported, line}; }

private:
    BitstreamError(Cause cause, const std::string& line) : MediaError(cause, line) {}
};

} // namespace zelvra::bitstream
