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

/// The folder that a variable of the environment names; empty if there is none. Relative ones do not count,
/// as the XDG Base Directory Specification says.
std::filesystem::path folderNamedBy(const char* variable) {
    const char* value = std::getenv(variable);
    const std::filesystem::path folder = value != nullptr ? value : "";
    return folder.is_absolute() ? folder : std::filesystem::path();
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
    const std::filesystem::path named = folderNamedBy("ZELVRA_STATE");
    if (!named.empty()) {
        return named;
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
