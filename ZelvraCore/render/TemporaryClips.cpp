// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/TemporaryClips.h"

#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/records/MediaError.h"

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace zelvra {

namespace {

/// The folder by the environment variables of std::filesystem::temp_directory_path, whose own error does not
/// name it.
std::filesystem::path temporaryFolder() {
    std::filesystem::path named = "/tmp";
    for (const char* variable : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
        if (const char* value = std::getenv(variable)) {
            named = value;
            break;
        }
    }
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    if (error) {
        throw MediaError::cannot(MediaError::Cause::unwritable, "use the temporary folder", named.string(),
                                 error.message());
    }
    return folder;
}

void sweep(const std::filesystem::path& folder) {
    std::error_code ignored; // a clip that cannot be removed does no harm
    for (std::filesystem::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        std::error_code failed;
        if (name.starts_with("zv_freeze_") && entry->is_regular_file(failed)) {
            std::filesystem::remove(entry->path(), failed);
        }
    }
}

/// A render that sweeps holds the folder for moments. Another program may hold it for ever, so this does not
/// wait long; without the lock, a render that starts later may remove the clips.
void share(int lock) {
    constexpr int mostTries = 100;
    for (int tries = 0; ::flock(lock, LOCK_SH | LOCK_NB) != 0 && tries < mostTries; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

} // namespace

TemporaryClips::~TemporaryClips() {
    remove();
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

std::filesystem::path TemporaryClips::add() {
    if (folder_.empty()) {
        useFolder();
    }
    return paths_.emplace_back(folder_ / freezeClipName());
}

std::vector<std::filesystem::path> TemporaryClips::remove() {
    std::erase_if(paths_, [](const std::filesystem::path& path) {
        std::error_code error;
        std::filesystem::remove(path, error);
        return !error;
    });
    return paths_;
}

void TemporaryClips::useFolder() {
    folder_ = temporaryFolder();
    lock_ = ::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock_ < 0) {
        return;
    }
    if (::flock(lock_, LOCK_EX | LOCK_NB) == 0) {
        sweep(folder_);
    }
    share(lock_);
}

} // namespace zelvra
