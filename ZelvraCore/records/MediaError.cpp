// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/MediaError.h"

#include <system_error>

namespace zelvra {

MediaError MediaError::cannot(Cause cause, std::string_view verb, std::string_view object,
                              std::string_view reason) {
    return {cause, cannotDo(verb, object).append(": ").append(reason)};
}

MediaError MediaError::cannotRead(std::string_view file, std::string_view reason) {
    return cannot(Cause::unreadable, "read", file, reason);
}

MediaError MediaError::cannotWrite(std::string_view file, std::string_view reason) {
    return cannot(Cause::unwritable, "write", file, reason);
}

std::string cannotDo(std::string_view verb, std::string_view object) {
    std::string line("cannot ");
    line.append(verb).append(" '").append(object).append("'");
    return line;
}

std::string systemReason(int error) {
    return std::generic_category().message(error);
}

} // namespace zelvra
