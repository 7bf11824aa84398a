// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/journal/StateFolder.h"

#include "ZelvraCore/records/MediaError.h"

#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace zelvra {

namespace {

/// The path that a variable of the environment holds; empty if there is none.
std::filesystem::path pathNamedBy(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "";
}

/// The same, but relative paths do not count, as the XDG Base Directory Specification says.
std::filesystem::path folderNamedBy(const char* variable) {
    const std::filesystem::path named = pathNamedBy(variable);
    return named.is_absolute() ? named : std::filesystem::path();
}

std::filesystem::path homeFolder() {
    std::filesystem::path home = folderNamedBy("HOME");
    if (home.empty()) {
        constexpr std::size_t enough = 16 << 10;
        std::vector<char> texts(enough);
        passwd entry{};
        passwd* found = nullptr;
        ::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found);
        home = found != nullptr ? found->pw_dir : "/";
    }
    return home;
}

} // namespace

std::filesystem::path stateFolder() {
    const std::filesystem::path named = pathNamedBy("ZELVRA_STATE");
    if (!named.empty()) {
        return std::filesystem::absolute(named);
    }
    const std::filesystem::path states = folderNamedBy("XDG_STATE_HOME");
    return (states.empty() ? homeFolder() / ".local/state" : states) / "zelvra";
}

void makePrivateFolder(const std::filesystem::path& folder) {
    std::error_code error;
    if (std::filesystem::create_directories(folder, error)) {
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    }
    if (error) {
        throw MediaError::cannotWrite(folder.string(), error.message());
    }
}

} // namespace zelvra
